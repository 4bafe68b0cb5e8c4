#include "mail/mail_way_out.h"

#include "mail/sendmail_way_out.h"
#include "mail/smtp_way_out.h"

#include <utility>

std::unique_ptr<MailWayOut> open_way_out(const MailProfile &profile,
                                         std::function<Credentials()> credentials,
                                         const NetworkConditions &conditions)
{
    if (profile.outgoing == OutgoingKind::Smtp)
        return std::make_unique<SmtpWayOut>(profile.outgoing_server, std::move(credentials),
                                            conditions);
    return std::make_unique<SendmailWayOut>(find_sendmail(profile.sendmail_program), conditions);
}
