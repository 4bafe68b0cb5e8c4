#include <gmime/gmime.h>

#include "mail/mime_parts.h"

#include "mail/header_fields.h"
#include "mail/transfer_decoding.h"

#include <QByteArrayView>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace
{
constexpr int most_levels = 50;
constexpr int most_parts = 1'000;
// More than any text of 1 Mi characters needs, whatever its encoding.
constexpr qint64 longest_content = qint64(32) * 1024 * 1024;

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

// Lends the message's bytes to the parser, which neither copies nor frees them.
struct ReturnBytes
{
    void operator()(GByteArray *array) const { g_byte_array_free(array, FALSE); }
};
using LentBytes = std::unique_ptr<GByteArray, ReturnBytes>;

void start_gmime()
{
    struct Library
    {
        Library() { g_mime_init(); }
        ~Library() { g_mime_shutdown(); }
    };
    static const Library library;
}

bool is_type(GMimeObject *part, const char *type, const char *subtype)
{
    return g_mime_content_type_is_type(g_mime_object_get_content_type(part), type, subtype) != 0;
}

bool is_attachment(GMimeObject *part)
{
    const char *disposition = g_mime_object_get_disposition(part);
    return disposition != nullptr && g_ascii_strcasecmp(disposition, "attachment") == 0;
}

bool is_delivery_status(GMimeObject *part)
{
    return is_type(part, "message", "delivery-status") ||
           is_type(part, "message", "global-delivery-status");
}

bool is_returned_headers(GMimeObject *part)
{
    return is_type(part, "text", "rfc822-headers");
}

// RFC 6522: a report on the delivery of a message.
bool is_delivery_report(GMimeObject *part)
{
    const char *type = g_mime_object_get_content_type_parameter(part, "report-type");
    return GMIME_IS_MULTIPART(part) && is_type(part, "multipart", "report") && type != nullptr &&
           g_ascii_strcasecmp(type, "delivery-status") == 0;
}

// The report in a message that a report encloses; nullptr without one.
GMimeObject *enclosed_report(GMimeObject *report)
{
    if (!is_delivery_report(report))
        return nullptr;
    auto *parts = GMIME_MULTIPART(report);
    for (int i = 0; i < g_mime_multipart_get_count(parts); ++i) {
        GMimeObject *part = g_mime_multipart_get_part(parts, i);
        GMimeMessage *message = GMIME_IS_MESSAGE_PART(part)
                                    ? g_mime_message_part_get_message(GMIME_MESSAGE_PART(part))
                                    : nullptr;
        GMimeObject *content = message == nullptr ? nullptr : g_mime_message_get_mime_part(message);
        if (content != nullptr && is_delivery_report(content))
            return content;
    }
    return nullptr;
}

bool is_of_known_type(GMimeObject *part)
{
    static constexpr std::array types = {"text",        "image",   "audio",     "video", "font",
                                         "application", "message", "multipart", "model"};
    return std::ranges::any_of(types,
                               [part](const char *type) { return is_type(part, type, "*"); });
}

QByteArray decode_transfer(QByteArrayView content, GMimeContentEncoding encoding)
{
    switch (encoding) {
    case GMIME_CONTENT_ENCODING_BASE64:
        return decode_base64(content);
    case GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE:
        return decode_quoted_printable(content);
    case GMIME_CONTENT_ENCODING_UUENCODE:
        return decode_uuencode(content);
    default:
        return content.toByteArray();
    }
}

// How good a part is as the message's text; the first part of the best kind is taken.
enum class TextKind { None, OtherText, Html, Plain };

class PartWalk
{
public:
    PartWalk(QByteArrayView message, MimeParts &parts) : message_(message), parts_(parts) {}

    void run(GMimeObject *root)
    {
        if (GMIME_IS_PART(root) && !is_attachment(root) && is_of_unreadable_type(root))
            choose(root, TextKind::Plain);
        else
            walk(root, 0);
        read_wrapped_report(root);
        if (best_ != nullptr)
            take_text();
        parts_.has_no_text = best_ == nullptr && parts_.text.isEmpty() && has_leaf_;
    }

private:
    void walk(GMimeObject *part, int level)
    {
        if (level > most_levels || ++seen_ > most_parts)
            parts_.has_unread_parts = true;
        else if (GMIME_IS_MULTIPART(part))
            walk_multipart(GMIME_MULTIPART(part), level);
        else
            leaf(part);
    }

    // Some gateways enclose a report in one of their own that says nothing: a report without status
    // part is looked through. One with a status part encloses the returned message.
    void read_wrapped_report(GMimeObject *report)
    {
        for (int level = 1; parts_.delivery_status.isEmpty(); ++level) {
            report = enclosed_report(report);
            if (report == nullptr)
                return;
            GMimeObject *const outer = std::exchange(best_, nullptr);
            const TextKind outer_kind = std::exchange(best_kind_, TextKind::None);
            walk(report, level);
            if (best_ == nullptr) {
                best_ = outer;
                best_kind_ = outer_kind;
            } else if (outer != nullptr) {
                parts_.has_unread_parts = true;
            }
        }
    }

    void walk_multipart(GMimeMultipart *multipart, int level)
    {
        const int count = g_mime_multipart_get_count(multipart);
        for (int i = 0; i < count && seen_ <= most_parts; ++i)
            walk(g_mime_multipart_get_part(multipart, i), level + 1);
        if (count == 0 && best_kind_ == TextKind::None)
            parts_.text = level == 0 ? preamble_with_nul(multipart) : preamble_of(multipart);
    }

    static QByteArray preamble_of(GMimeMultipart *multipart)
    {
        return g_mime_multipart_get_prologue(multipart); // nullptr makes an empty one
    }

    // The parser's preamble ends at its first NUL. For the outermost multipart the message has all
    // of it: up to the first boundary.
    QByteArray preamble_with_nul(GMimeMultipart *multipart) const
    {
        HeaderFields fields(message_);
        while (fields.next()) {
        }
        const QByteArrayView body = message_.sliced(fields.end());
        if (!body.contains('\0'))
            return preamble_of(multipart);
        const QByteArray named =
            g_mime_object_get_content_type_parameter(GMIME_OBJECT(multipart), "boundary");
        const qsizetype boundary = named.isEmpty() ? -1 : body.indexOf("\n--" + named);
        const qsizetype end = boundary < 0 ? body.size() : boundary + 1;
        return body.first(std::min<qint64>(end, longest_content)).toByteArray();
    }

    void leaf(GMimeObject *part)
    {
        has_leaf_ = true;
        if (!GMIME_IS_PART(part)) // an enclosed message
            return;
        if (is_delivery_status(part))
            parts_.delivery_status.append(content_of(part));
        else if (!is_attachment(part) && !is_returned_headers(part))
            choose(part, kind_of(part));
    }

    static TextKind kind_of(GMimeObject *part)
    {
        if (is_type(part, "text", "plain"))
            return TextKind::Plain;
        if (is_type(part, "text", "html"))
            return TextKind::Html;
        return is_type(part, "text", "*") ? TextKind::OtherText : TextKind::None;
    }

    void choose(GMimeObject *part, TextKind kind)
    {
        if (kind <= best_kind_)
            return;
        best_kind_ = kind;
        best_ = part;
    }

    // "Content-Type: text" and the like, which the parser takes for a file of bytes, or a type that
    // there is not.
    bool is_of_unreadable_type(GMimeObject *root) const
    {
        if (!is_of_known_type(root))
            return true;
        HeaderFields fields(message_);
        while (fields.next()) {
            if (fields.is("Content-Type"))
                return !fields.value().contains('/');
        }
        return false;
    }

    void take_text()
    {
        const char *charset = g_mime_object_get_content_type_parameter(best_, "charset");
        parts_.charset = charset;
        parts_.is_html = best_kind_ == TextKind::Html;
        parts_.bytes_left_out = std::max<qint64>(0, raw_content(best_).size() - longest_content);
        parts_.text = content_of(best_);
    }

    QByteArray content_of(GMimeObject *part) const
    {
        const QByteArrayView content = raw_content(part);
        return decode_transfer(content.first(std::min<qint64>(content.size(), longest_content)),
                               g_mime_part_get_content_encoding(GMIME_PART(part)));
    }

    // The parser keeps a part's content as a range of the stream, which is the message itself.
    QByteArrayView raw_content(GMimeObject *part) const
    {
        GMimeDataWrapper *content = g_mime_part_get_content(GMIME_PART(part));
        if (content == nullptr)
            return {};
        const GMimeStream *stream = g_mime_data_wrapper_get_stream(content);
        const qint64 end = stream->bound_end < 0 ? message_.size() : stream->bound_end;
        return message_.sliced(stream->bound_start, end - stream->bound_start);
    }

    QByteArrayView message_;
    MimeParts &parts_;
    int seen_ = 0;
    bool has_leaf_ = false;
    TextKind best_kind_ = TextKind::None;
    GMimeObject *best_ = nullptr; // owned by the tree that is walked
};
} // namespace

MimeParts read_mime_parts(QByteArrayView message)
{
    start_gmime();
    auto *bytes = reinterpret_cast<guint8 *>(const_cast<char *>(message.data()));
    const LentBytes lent(g_byte_array_new_take(bytes, static_cast<gsize>(message.size())));
    const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_byte_array(lent.get()));
    g_mime_stream_mem_set_owner(GMIME_STREAM_MEM(stream.get()), FALSE);
    const Owned<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    const Owned<GMimeObject> root(g_mime_parser_construct_part(parser.get(), nullptr));
    MimeParts parts;
    if (root)
        PartWalk(message, parts).run(root.get());
    return parts;
}
