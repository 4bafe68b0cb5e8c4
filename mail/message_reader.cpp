#include "mail/message_reader.h"

#include "mail/blank.h"
#include "mail/charset.h"
#include "mail/delivery_report.h"
#include "mail/encoded_words.h"
#include "mail/header_fields.h"
#include "mail/html_text.h"
#include "mail/mailbox_field.h"
#include "mail/message_date.h"
#include "mail/mime_parts.h"
#include "mail/parser_guard.h"
#include "mail/text_shape.h"
#include "platform/date_time_text.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace
{
constexpr qsizetype longest_field = qsizetype(64) * 1024;
constexpr qsizetype longest_text = qsizetype(1024) * 1024;
// Far more than the bytes of a field of that length; decoding what is longer takes its time.
constexpr qsizetype longest_value = 4 * longest_field;

const QString line_end = QStringLiteral("\r\n");

// The header fields that a message's row needs, unfolded. Of repeated ones the first counts.
struct Header
{
    QByteArray from;
    QByteArray sender;
    QByteArray subject;
    QByteArray date;
    FailedRecipients failed;
    qint64 bytes_left_out = 0; // of from, sender and subject
    bool subject_is_cut = false;
    QByteArray content_fields; // as they stand, and an empty line
    qsizetype body = 0;
};

bool is_content_field(QByteArrayView name)
{
    constexpr qsizetype prefix = 8;
    return name.size() > prefix && name.first(prefix).compare("content-", Qt::CaseInsensitive) == 0;
}

void keep_first(QByteArray &kept, QByteArrayView value)
{
    if (kept.isEmpty())
        kept = unfolded(value);
}

// Cuts a value that is too long behind its last blank. @return how many bytes went.
qsizetype cut(QByteArray &value)
{
    const qsizetype size = value.size();
    if (size > longest_value) {
        value.truncate(longest_value);
        const auto last_blank = std::find_if(value.crbegin(), value.crend(), is_blank);
        value.truncate(value.crend() - last_blank);
    }
    return size - value.size();
}

Header read_header(QByteArrayView message)
{
    Header header;
    HeaderFields fields(message);
    while (fields.next()) {
        if (fields.is("From"))
            keep_first(header.from, fields.value());
        else if (fields.is("Sender"))
            keep_first(header.sender, fields.value());
        else if (fields.is("Subject"))
            keep_first(header.subject, fields.value());
        else if (fields.is("Date"))
            keep_first(header.date, fields.value());
        else if (fields.is("X-Failed-Recipients"))
            header.failed.add_list(fields.value());
        else if (is_content_field(fields.name()))
            header.content_fields.append(fields.lines());
    }
    header.subject_is_cut = header.subject.size() > longest_value;
    for (QByteArray *value : {&header.from, &header.sender, &header.subject})
        header.bytes_left_out += cut(*value);
    header.content_fields.append('\n');
    header.body = fields.body();
    return header;
}

// A mailbox file's "From ann@example.org Mon …" line in front of the header; 0 without one.
qsizetype envelope_line_length(QByteArrayView message)
{
    const bool is_envelope = message.startsWith("From ") || message.startsWith(">From ");
    const qsizetype end = is_envelope ? message.indexOf('\n') + 1 : 0;
    const QByteArrayView line = message.first(end);
    // "From : ann@example.org" is a field with a blank before its colon.
    return line.sliced(line.indexOf(' ') + 1).trimmed().startsWith(':') ? 0 : end;
}

// Leaves the parser only the fields that describe the content, in front of the body: of all others
// it would make objects that nobody asks for. They go where the header stood, which is read by
// then.
QByteArrayView content_for_parser(QByteArray &message, const Header &header)
{
    const qsizetype begin = header.body - header.content_fields.size();
    if (begin < 0) { // the header has no empty line to overwrite
        message.replace(0, header.body, header.content_fields);
        return message;
    }
    std::ranges::copy(header.content_fields, message.begin() + begin);
    return QByteArrayView(message).sliced(begin);
}

Mailbox sender_of(const Header &header)
{
    Mailbox from = first_mailbox(header.from);
    if (!from.address.isEmpty())
        return from;
    Mailbox sender = first_mailbox(header.sender);
    return sender.address.isEmpty() ? from : sender;
}

QString subject_of(const Header &header)
{
    QString subject = as_one_line(decode_header_text(header.subject));
    if (header.subject_is_cut) // a word may have gone on in the next encoded word
        drop_last_word(subject);
    return subject;
}

QString date_of(const Header &header, const QDateTime &arrived)
{
    const QDateTime date = read_message_date(header.date);
    const QDateTime &best = date.isValid() ? date : arrived;
    return best.isValid() ? date_time_text(best) : QString();
}

// What a limit kept out of the fields, to be told in the text.
class LeftOut
{
public:
    void shorten_to(QString &text, qsizetype limit) { characters_ += shorten(text, limit); }
    void add_bytes(qint64 bytes) { bytes_ += bytes; }
    void drop_last_word_of(QString &text) { characters_ += drop_last_word(text); }
    void add_parts(const QString &which) { parts_ = which; }

    void tell(QString &text) const
    {
        QStringList what;
        if (characters_ > 0)
            what += counted(characters_, QStringLiteral("characters"));
        if (bytes_ > 0)
            what += counted(bytes_, QStringLiteral("bytes"));
        if (!parts_.isEmpty())
            what += parts_;
        if (!what.isEmpty())
            text += (text.isEmpty() ? QString() : line_end) +
                    QStringLiteral("[%1 of this message are not shown here.]")
                        .arg(what.join(QStringLiteral(" and ")));
    }

private:
    static QString counted(qint64 number, const QString &things)
    {
        return QLocale(QLocale::English).toString(number) + u' ' + things;
    }

    qint64 characters_ = 0;
    qint64 bytes_ = 0;
    QString parts_;
};

void append_line(QString &text, const QString &line)
{
    if (!text.isEmpty() && !text.endsWith(line_end))
        text += line_end;
    text += line;
}

QString readable_text(const MimeParts &parts)
{
    const QString text = decode_charset(parts.text, parts.charset);
    return parts.is_html ? html_to_text(text) : text;
}

QString text_of(const MimeParts &parts, const QStringList &recipients, LeftOut &left_out)
{
    const QString list = recipients.join(line_end);
    QString text = readable_text(parts);
    if (parts.bytes_left_out > 0)
        left_out.drop_last_word_of(text);
    left_out.shorten_to(text, longest_text - list.size());
    text = with_crlf(text);
    left_out.shorten_to(text, longest_text - list.size());
    if (!list.isEmpty())
        append_line(text, list);
    return text;
}
// Of a message that was read in part the last line may be half an address.
qsizetype drop_half_line(RawMessage &message)
{
    const qsizetype size = message.bytes.size();
    if (message.bytes_left_out > 0)
        message.bytes.truncate(message.bytes.lastIndexOf('\n') + 1);
    return size - message.bytes.size();
}

void tell_parts(const MimeParts &parts, const QString &text, LeftOut &left_out)
{
    if (parts.has_no_text && text.isEmpty())
        left_out.add_parts(QStringLiteral("the parts"));
    else if (parts.has_unread_parts)
        left_out.add_parts(QStringLiteral("some parts"));
}
} // namespace

MessageFields read_message(RawMessage message)
{
    LeftOut left_out;
    left_out.add_bytes(drop_half_line(message));
    QByteArray &bytes = message.bytes;
    bytes.remove(0, envelope_line_length(bytes));
    const qsizetype guarded = guard_for_parser(bytes);
    left_out.add_bytes(message.bytes_left_out + bytes.size() - guarded);
    bytes.truncate(guarded);

    Header header = read_header(bytes);
    const MimeParts parts = read_mime_parts(content_for_parser(bytes, header));
    for (const QByteArray &status : parts.delivery_status)
        header.failed.add_status(status);
    left_out.add_bytes(header.bytes_left_out + parts.bytes_left_out +
                       header.failed.bytes_left_out());

    const Mailbox sender = sender_of(header);
    MessageFields fields{sender.address, subject_of(header), date_of(header, message.arrived),
                         sender.name, text_of(parts, header.failed.addresses(), left_out)};
    for (QString *field : {&fields.address, &fields.subject, &fields.name})
        left_out.shorten_to(*field, longest_field);
    tell_parts(parts, fields.text, left_out);
    left_out.tell(fields.text);
    return fields;
}
