#include "bench/runner/screen.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace
{
constexpr int smallest_window = 200; // pixels; the toolkit's own helper windows are smaller
constexpr int lines_looked_at = 24;

struct Free
{
    void operator()(void *reply) const { std::free(reply); } // NOLINT: xcb hands out malloc's
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;
} // namespace

Screen::Screen() : connection_(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(connection_.get()) != 0)
        throw std::runtime_error("Cannot open the display");
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.get(), screen_->root, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection_.get());
}

int Screen::descriptor() const
{
    return xcb_get_file_descriptor(connection_.get());
}

std::optional<WindowPlace> Screen::appeared()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        if ((event->response_type & 0x7F) != XCB_MAP_NOTIFY)
            continue;
        xcb_map_notify_event_t map{};
        std::memcpy(&map, event.get(), sizeof map);
        if (const auto place = place_of(map.window))
            return place;
    }
    return std::nullopt;
}

std::optional<WindowPlace> Screen::place_of(xcb_window_t window) const
{
    const Reply<xcb_get_geometry_reply_t> geometry{xcb_get_geometry_reply(
        connection_.get(), xcb_get_geometry(connection_.get(), window), nullptr)};
    if (!geometry || geometry->width < smallest_window || geometry->height < smallest_window)
        return std::nullopt;
    return WindowPlace{window, geometry->x, geometry->y, geometry->width, geometry->height};
}

Picture Screen::look_at(const WindowPlace &place) const
{
    const int left = std::max<int>(place.x, 0);
    const int right = std::min<int>(place.x + place.width, screen_->width_in_pixels);
    const auto width = static_cast<std::uint16_t>(std::max(right - left, 0));
    std::vector<xcb_get_image_cookie_t> asked;
    for (int line = 0; line < lines_looked_at; ++line) {
        const int y = place.y + (2 * line + 1) * place.height / (2 * lines_looked_at);
        if (width > 0 && y >= 0 && y < screen_->height_in_pixels)
            asked.push_back(xcb_get_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                          screen_->root, static_cast<std::int16_t>(left),
                                          static_cast<std::int16_t>(y), width, 1, ~0U));
    }
    Picture picture;
    for (const xcb_get_image_cookie_t &cookie : asked) {
        const Reply<xcb_get_image_reply_t> image{
            xcb_get_image_reply(connection_.get(), cookie, nullptr)};
        if (!image)
            throw std::runtime_error("The display does not show its picture");
        const auto pixels = static_cast<std::size_t>(xcb_get_image_data_length(image.get())) / 4;
        picture.resize(picture.size() + pixels);
        std::memcpy(&picture[picture.size() - pixels], xcb_get_image_data(image.get()), pixels * 4);
    }
    return picture;
}

void Screen::close(const WindowPlace &place)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = place.window;
    message.type = atom("WM_PROTOCOLS");
    message.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(connection_.get(), 0, place.window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&message)); // NOLINT: as the protocol has it
    xcb_flush(connection_.get());
}

xcb_atom_t Screen::atom(const std::string &name) const
{
    const auto size = static_cast<std::uint16_t>(name.size());
    const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(
        connection_.get(), xcb_intern_atom(connection_.get(), 0, size, name.c_str()), nullptr)};
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}
