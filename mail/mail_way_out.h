#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

/// What became of a recipient.
enum class Fate
{
    Accepted,
    Refused, // for good (SMTP 5yz)
    NotNow,  // refused for the moment (SMTP 4yz)
    Unknown  // the answer never came: it may have gone out
};

struct RecipientFate
{
    QString recipient;
    Fate fate = Fate::Unknown;
    QString words; // the way out's own, empty when accepted
};

/// A way that a message leaves this machine.
class MailWayOut
{
public:
    virtual ~MailWayOut() = default;

    /// Hands one message over for all recipients, in as many envelopes as the way takes.
    /// @param message  RFC 5322, CR LF line ends, complete but for what a way out adds itself.
    /// @return the fate of every recipient, in their order.
    /// @throws RuntimeError 32000 when nobody got it (no server, refused login, no program).
    virtual std::vector<RecipientFate> hand_over(const QString &sender, const QStringList &recipients,
                                                 const QByteArray &message) = 0;
};
