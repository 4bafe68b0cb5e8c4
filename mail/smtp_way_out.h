#pragma once

#include "mail/mail_way_out.h"

/// Hands messages to a mail server (SMTP, RFC 5321). A line that breaks off is opened anew as long
/// as each one gets something done; not after a silence, nor once a message's content stays
/// unanswered.
class SmtpWayOut : public MailWayOut
{
public:
    /// @param server  a port of 0 is 465, 587 with STARTTLS, or 25 on a plain line.
    SmtpWayOut(MailServer server, std::function<Credentials()> credentials,
               NetworkConditions conditions);

    QString name() const override;
    std::vector<RecipientFate> hand_over(const QString &sender, const QStringList &recipients,
                                         const QByteArray &message) override;

private:
    MailServer server_;
    std::function<Credentials()> credentials_;
    NetworkConditions conditions_;
};
