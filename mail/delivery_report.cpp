#include "mail/delivery_report.h"

#include "mail/charset.h"
#include "mail/header_fields.h"
#include "mail/text_shape.h"

#include <QByteArray>

#include <algorithm>

namespace
{
constexpr qsizetype longest_list = qsizetype(512) * 1024;
constexpr qsizetype line_end = 2;

// "failed (Bad destination mailbox address)" is "failed"; a comment may follow any value. Some
// servers write "failure".
bool is_failure(QByteArrayView action)
{
    const qsizetype comment = action.indexOf('(');
    const QByteArrayView word = action.first(comment < 0 ? action.size() : comment).trimmed();
    return word.compare("failed", Qt::CaseInsensitive) == 0 ||
           word.compare("failure", Qt::CaseInsensitive) == 0;
}
} // namespace

void FailedRecipients::add_status(QByteArrayView part)
{
    while (!part.isEmpty()) {
        HeaderFields fields(part);
        while (fields.next()) {
        }
        add_recipient(part.first(fields.end()));
        part = part.sliced(fields.end());
    }
}

void FailedRecipients::add_recipient(QByteArrayView block)
{
    QByteArray action;
    QByteArray final_recipient;
    QByteArray original_recipient;
    HeaderFields fields(block);
    while (fields.next()) {
        if (fields.is("Action"))
            action = unfolded(fields.value());
        else if (fields.is("Final-Recipient"))
            final_recipient = unfolded(fields.value());
        else if (fields.is("Original-Recipient"))
            original_recipient = unfolded(fields.value());
    }
    if (!is_failure(action))
        return;
    add_typed(final_recipient);
    add_typed(original_recipient);
}

// "rfc822; ann@example.org". Addresses of other systems ("x400; /S=ann/…") are nobody's in a list
// of mail addresses.
void FailedRecipients::add_typed(QByteArrayView value)
{
    const QByteArrayView address = value.sliced(value.indexOf(';') + 1);
    if (address.contains('@'))
        add(address);
}

void FailedRecipients::add_list(QByteArrayView value)
{
    const QByteArray line = unfolded(value);
    QByteArrayView rest = line;
    while (!rest.isEmpty()) {
        const qsizetype comma = rest.indexOf(',');
        const qsizetype end = comma < 0 ? rest.size() : comma;
        add(rest.first(end));
        rest = rest.sliced(std::min(end + 1, rest.size()));
    }
}

void FailedRecipients::add(QByteArrayView address)
{
    if (is_full_) {
        bytes_left_out_ += address.trimmed().size();
        return;
    }
    QString text = as_one_line(decode_charset(address, {}));
    if (text.startsWith(u'<') && text.endsWith(u'>'))
        text = text.sliced(1, text.size() - 2).trimmed();
    if (text.isEmpty() || known_.contains(text))
        return;
    is_full_ = size_ + text.size() + line_end > longest_list;
    if (is_full_) {
        bytes_left_out_ += address.trimmed().size();
        return;
    }
    size_ += text.size() + line_end;
    known_.insert(text);
    addresses_.append(text);
}
