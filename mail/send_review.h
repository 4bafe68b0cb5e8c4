#pragma once

#include "mail/outgoing_message.h"

#include <QString>

/// What a person answers when shown a message.
enum class SendAnswer {
    Send,
    Cancel,
    Nobody // nobody is there to be shown it
};

/// How the store shows a person the message that is about to go out.
class SendDialog
{
public:
    virtual ~SendDialog() = default;

    /// @param way_out  what carries it, for a person: "the mail server mail.example.org".
    virtual SendAnswer review(const OutgoingMessage &message, const QString &way_out) = 0;
};

/// Where nobody can be shown anything.
class NoSendDialog : public SendDialog
{
public:
    SendAnswer review(const OutgoingMessage &, const QString &) override
    {
        return SendAnswer::Nobody;
    }
};
