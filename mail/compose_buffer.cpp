#include "mail/compose_buffer.h"

#include "mail/attachment.h"
#include "mail/recipient.h"
#include "platform/runtime_error.h"

namespace
{
constexpr int type_to = 1;
constexpr int type_blind_copy = 3;

[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::mail_failure, what);
}
} // namespace

void ComposeBuffer::set_RecipIndex(int index)
{
    if (index < 0 || static_cast<std::size_t>(index) > recipients_.size())
        throw RuntimeError(error_number::subscript_out_of_range,
                           QStringLiteral("There is no recipient number %1: the message has %2.")
                               .arg(index)
                               .arg(recipients_.size()));
    current_ = static_cast<std::size_t>(index);
    if (current_ == recipients_.size())
        recipients_.emplace_back();
}

ComposeBuffer::Recipient &ComposeBuffer::current()
{
    if (recipients_.empty())
        fail(QStringLiteral("No recipient is current in the message."));
    return recipients_[current_];
}

void ComposeBuffer::set_RecipType(int type)
{
    if (type != type_to && type != type_blind_copy)
        fail(QStringLiteral("There is no recipient type %1.").arg(type));
    current().is_blind_copy = type == type_blind_copy;
}

void ComposeBuffer::set_RecipAddress(const QString &address)
{
    current().text = address;
}

void ComposeBuffer::ResolveName()
{
    resolve_recipient(current().text);
}

OutgoingMessage ComposeBuffer::message(const Mailbox &sender) const
{
    OutgoingMessage message;
    message.sender = sender;
    message.subject = subject_;
    message.text = text_;
    for (const Recipient &recipient : recipients_) {
        if (const auto address = resolve_recipient(recipient.text))
            (recipient.is_blind_copy ? message.blind_copies : message.to) += *address;
    }
    if (message.to.isEmpty() && message.blind_copies.isEmpty())
        fail(QStringLiteral("The message has no recipient. Nothing was sent."));
    if (!attachment_path_.isEmpty())
        message.attachment = read_attachment(attachment_path_);
    return message;
}
