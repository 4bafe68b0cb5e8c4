#include "mail/outgoing_message.h"

#include "mail/recipient.h"

#include <QSet>

namespace
{
// Domains are equal without regard to letter case (RFC 5321 2.4), local parts are not.
QString same_for_equal(const QString &address)
{
    const QString domain = domain_of(address);
    return address.chopped(domain.size()) + domain.toLower();
}
} // namespace

QStringList OutgoingMessage::recipients() const
{
    QStringList all;
    QSet<QString> seen;
    for (const QStringList &list : {to, blind_copies}) {
        for (const QString &address : list) {
            const auto size = seen.size();
            seen.insert(same_for_equal(address));
            if (seen.size() > size)
                all += address;
        }
    }
    return all;
}
