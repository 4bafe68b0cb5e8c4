#pragma once

#include "mail/compose_buffer.h"
#include "mail/mail_way_out.h"
#include "mail/send_review.h"
#include "platform/date_time_text.h"

/// Whose mail goes out, and how.
struct SendingAccount
{
    MailProfile profile;
    std::function<Credentials()> credentials; // asked when a server wants to be signed on to
    /// The server took them.
    std::function<void()> accepted = [] {};
    /// It refused them, in these words. @return whether the next ones may be better.
    std::function<bool(const QString &words)> ask_again = [](const QString &) { return false; };
};

/// What sending needs of the world.
struct SendingConditions
{
    NetworkConditions network;
    Clock clock = &QDateTime::currentDateTime;
};

/// Sends a new message to everybody it is for; with a dialog, only if the person who is shown it
/// says so.
/// @param dialog  nullptr: nobody is asked.
/// @throws RuntimeError 32000 when nothing could be sent, or naming everybody who did not get it
/// (undelivered()); RuntimeError 32001 when the person cancelled it.
void send_message(const ComposeBuffer &draft, const SendingAccount &account,
                  const SendingConditions &conditions, SendDialog *dialog);
