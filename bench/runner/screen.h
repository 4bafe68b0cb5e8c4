#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

/// A top-level window's place on the screen.
struct WindowPlace
{
    xcb_window_t window;
    std::int16_t x, y;
    std::uint16_t width, height;
};

/// Some lines of pixels, spread evenly over a window.
using Picture = std::vector<std::uint32_t>;

/// An X display without a window manager, looked at from outside: nothing is changed in the
/// programs that draw on it.
class Screen
{
public:
    /// @throws std::runtime_error when the display of $DISPLAY cannot be opened.
    Screen();

    /// Something to wait on for the next event.
    int descriptor() const;

    /// The next window of a program's usual size that has come onto the screen, if one has.
    std::optional<WindowPlace> appeared();

    /// What the window shows now; lines outside the screen are left out.
    Picture look_at(const WindowPlace &place) const;

    /// Asks the window to close, as its frame's close button does.
    void close(const WindowPlace &place);

private:
    std::optional<WindowPlace> place_of(xcb_window_t window) const;
    xcb_atom_t atom(const std::string &name) const;

    struct Disconnect
    {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    const xcb_screen_t *screen_;
};
