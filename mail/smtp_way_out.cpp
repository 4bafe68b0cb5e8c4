#include "mail/smtp_way_out.h"

#include "mail/recipient.h"
#include "mail/smtp_delivery.h"
#include "platform/runtime_error.h"

#include <utility>

SmtpWayOut::SmtpWayOut(MailServer server, std::function<Credentials()> credentials,
                       NetworkConditions conditions)
    : server_(std::move(server)),
      credentials_(std::move(credentials)),
      conditions_(std::move(conditions))
{
}

QString SmtpWayOut::name() const
{
    return QStringLiteral("the mail server %1").arg(harmless_text(server_.host));
}

std::vector<RecipientFate> SmtpWayOut::hand_over(const QString &sender,
                                                 const QStringList &recipients,
                                                 const QByteArray &message)
{
    SmtpDelivery delivery(sender, recipients, message);
    while (!delivery.is_done()) {
        const int concluded = delivery.concluded();
        try {
            SmtpSession session(server_, credentials_, conditions_);
            delivery.run(session);
            session.quit();
        } catch (const ServerSilent &error) { // the next wait would be as long
            if (delivery.concluded() == 0)
                throw;
            delivery.give_up(error.description());
        } catch (const RuntimeError &error) {
            if (delivery.concluded() == 0)
                throw;
            if (delivery.concluded() == concluded || delivery.has_lost_content())
                delivery.give_up(error.description());
        }
    }
    return delivery.fates();
}
