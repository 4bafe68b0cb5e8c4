#include <gmime/gmime.h>

#include "mail/compose_message.h"

#include "mail/recipient.h"
#include "mail/text_shape.h"
#include "platform/words.h"

#include <QLocale>
#include <QMimeDatabase>

#include <memory>

namespace
{
struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

struct FreeOptions
{
    void operator()(GMimeFormatOptions *options) const { g_mime_format_options_free(options); }
};
using FormatOptions = std::unique_ptr<GMimeFormatOptions, FreeOptions>;

constexpr const char *charset = "utf-8";

void start_gmime()
{
    struct Library
    {
        Library() { g_mime_init(); }
        ~Library() { g_mime_shutdown(); }
    };
    static const Library library;
}

Owned<InternetAddress> mailbox(const Mailbox &from)
{
    const QString name = as_one_line(from.name);
    Owned<InternetAddress> address(internet_address_mailbox_new(
        name.isEmpty() ? nullptr : name.toUtf8().constData(), from.address.toUtf8().constData()));
    internet_address_set_charset(address.get(), charset);
    return address;
}

void add(InternetAddressList *list, const Owned<InternetAddress> &address)
{
    internet_address_list_add(list, address.get());
}

void add_addresses(GMimeMessage *mime, const OutgoingMessage &message)
{
    add(g_mime_message_get_from(mime), mailbox(message.sender));
    InternetAddressList *to = g_mime_message_get_to(mime);
    for (const QString &address : message.to)
        add(to, mailbox({address, {}}));
    // What mail programs write where everybody gets a blind copy; a message without To is taken for
    // a broken one.
    if (message.to.isEmpty())
        add(to, Owned<InternetAddress>(internet_address_group_new("undisclosed-recipients")));
}

void set_content(GMimePart *part, const QByteArray &content)
{
    const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(
        content.constData(), static_cast<size_t>(content.size())));
    const Owned<GMimeDataWrapper> wrapper(
        g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(part, wrapper.get());
}

Owned<GMimeObject> text_part(const QString &text)
{
    const QByteArray lines = with_cr_lf(text).toUtf8();
    Owned<GMimeObject> part(GMIME_OBJECT(g_mime_part_new_with_type("text", "plain")));
    g_mime_object_set_content_type_parameter(part.get(), "charset", charset);
    auto *leaf = GMIME_PART(part.get());
    // The library ends lines by itself, except inside base64, where CR LF is content.
    set_content(leaf, QByteArray(lines).replace("\r\n", "\n"));
    const auto encoding =
        g_mime_part_get_best_content_encoding(leaf, GMIME_ENCODING_CONSTRAINT_7BIT);
    if (encoding == GMIME_CONTENT_ENCODING_BASE64)
        set_content(leaf, lines);
    g_mime_part_set_content_encoding(
        leaf, encoding == GMIME_CONTENT_ENCODING_DEFAULT ? GMIME_CONTENT_ENCODING_7BIT : encoding);
    return part;
}

bool is_utf8(const QByteArray &content)
{
    return content.isValidUtf8() && !content.contains('\0');
}

QByteArray content_type_of(const Attachment &attachment)
{
    const QMimeDatabase types;
    const QString type =
        types.mimeTypeForFileNameAndData(attachment.name, attachment.content).name();
    // RFC 2046 5: these must not be encoded in base64. The desktop's type for an empty file is none
    // of mail's.
    const bool is_unfit = type.startsWith(QLatin1String("message/")) ||
                          type.startsWith(QLatin1String("multipart/")) ||
                          type == QLatin1String("application/x-zerosize") || type.count(u'/') != 1;
    return is_unfit ? QByteArrayLiteral("application/octet-stream") : type.toLatin1();
}

// Left alone, the library takes the smallest charset that has all the letters.
void use_charset(GMimeParamList *parameters, const char *name)
{
    g_mime_param_set_charset(g_mime_param_list_get_parameter(parameters, name), charset);
}

void set_file_name(GMimeObject *part, const QString &file_name)
{
    const QString name = as_one_line(file_name);
    g_mime_part_set_filename(GMIME_PART(part),
                             name.isEmpty() ? "attachment" : name.toUtf8().constData());
    use_charset(g_mime_content_type_get_parameters(g_mime_object_get_content_type(part)), "name");
    use_charset(
        g_mime_content_disposition_get_parameters(g_mime_object_get_content_disposition(part)),
        "filename");
}

Owned<GMimeObject> attachment_part(const Attachment &attachment)
{
    const QList<QByteArray> type = content_type_of(attachment).split('/');
    Owned<GMimeObject> part(
        GMIME_OBJECT(g_mime_part_new_with_type(type[0].constData(), type[1].constData())));
    if (type[0] == "text" && is_utf8(attachment.content))
        g_mime_object_set_content_type_parameter(part.get(), "charset", charset);
    g_mime_object_set_disposition(part.get(), "attachment");
    auto *leaf = GMIME_PART(part.get());
    set_file_name(part.get(), attachment.name);
    set_content(leaf, attachment.content);
    g_mime_part_set_content_encoding(leaf, GMIME_CONTENT_ENCODING_BASE64);
    return part;
}

Owned<GMimeObject> body_of(const OutgoingMessage &message, const MessageStamp &stamp)
{
    Owned<GMimeObject> text = text_part(message.text);
    if (!message.attachment)
        return text;
    Owned<GMimeObject> all(GMIME_OBJECT(g_mime_multipart_new_with_subtype("mixed")));
    auto *parts = GMIME_MULTIPART(all.get());
    g_mime_multipart_set_boundary(parts, ("=-" + stamp.id.toLatin1()).constData());
    g_mime_multipart_add(parts, text.get());
    g_mime_multipart_add(parts, attachment_part(*message.attachment).get());
    return all;
}

QByteArray bytes_of(GMimeMessage *mime)
{
    const FormatOptions options(g_mime_format_options_new());
    g_mime_format_options_set_newline_format(options.get(), GMIME_NEWLINE_FORMAT_DOS);
    g_mime_format_options_set_param_encoding_method(options.get(),
                                                    GMIME_PARAM_ENCODING_METHOD_RFC2231);
    const Owned<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_object_write_to_stream(GMIME_OBJECT(mime), options.get(), stream.get());
    const GByteArray *bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    QByteArray written(reinterpret_cast<const char *>(bytes->data), bytes->len);
    if (!written.endsWith("\r\n"))
        written += "\r\n";
    return written;
}
} // namespace

QByteArray compose_message(const OutgoingMessage &message, const MessageStamp &stamp)
{
    start_gmime();
    const Owned<GMimeMessage> mime(g_mime_message_new(TRUE));
    add_addresses(mime.get(), message);
    g_mime_message_set_subject(mime.get(), as_one_line(message.subject).toUtf8().constData(),
                               charset);
    const QString date = QLocale::c().toString(stamp.date, QStringLiteral("ddd, ")) +
                         stamp.date.toString(Qt::RFC2822Date);
    g_mime_object_set_header(GMIME_OBJECT(mime.get()), "Date", date.toLatin1().constData(),
                             nullptr);
    const QString id = stamp.id + u'@' + domain_of(message.sender.address);
    g_mime_message_set_message_id(mime.get(), id.toLatin1().constData());
    g_mime_message_set_mime_part(mime.get(), body_of(message, stamp).get());
    return bytes_of(mime.get());
}
