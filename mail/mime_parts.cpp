#include <gmime/gmime.h>

#include "mail/mime_parts.h"

#include "mail/header_fields.h"
#include "mail/transfer_decoding.h"

#include <QByteArrayView>

#include <algorithm>
#include <memory>

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
        if (GMIME_IS_PART(root) && is_of_unreadable_type())
            choose(root, TextKind::Plain);
        else
            walk(root, 0);
        if (best_ != nullptr)
            take_text();
    }

private:
    void walk(GMimeObject *part, int level)
    {
        if (level > most_levels || ++seen_ > most_parts)
            parts_.has_unread_parts = true;
        else if (GMIME_IS_MULTIPART(part))
            walk_multipart(GMIME_MULTIPART(part), level);
        else if (GMIME_IS_PART(part))
            leaf(part);
    }

    void walk_multipart(GMimeMultipart *multipart, int level)
    {
        const int count = g_mime_multipart_get_count(multipart);
        for (int i = 0; i < count && seen_ <= most_parts; ++i)
            walk(g_mime_multipart_get_part(multipart, i), level + 1);
        const char *preamble = g_mime_multipart_get_prologue(multipart);
        if (count == 0 && preamble != nullptr && best_kind_ == TextKind::None)
            parts_.text = preamble;
    }

    void leaf(GMimeObject *part)
    {
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

    // "Content-Type: text" and the like, which the parser takes for a file of bytes.
    bool is_of_unreadable_type() const
    {
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
