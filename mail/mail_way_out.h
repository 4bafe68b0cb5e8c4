#pragma once

#include "mail/mail_profile.h"
#include "mail/server_connection.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

/// What became of a recipient.
enum class Fate {
    Accepted,
    Refused,  // for good (SMTP 5yz)
    NotNow,   // refused for the moment (SMTP 4yz)
    NotTried, // the way out failed before it was this one's turn
    Unknown   // the answer never came: it may have gone out
};

struct RecipientFate
{
    QString recipient;
    Fate fate = Fate::NotTried;
    QString words; // the way out's own, empty when accepted
};

/// As many recipients as go into one envelope: a server that refuses some of them slows down or
/// ends the whole transaction, so that it had better be a small one.
inline constexpr qsizetype recipients_per_envelope = 50;

/// A way that a message leaves this machine.
class MailWayOut
{
public:
    virtual ~MailWayOut() = default;

    /// For a person: "the mail server mail.example.org", "the program /usr/sbin/sendmail".
    virtual QString name() const = 0;

    /// Hands one message over for all recipients, in as many envelopes as the way takes.
    /// @param message  RFC 5322, CR LF line ends, complete but for what a way out adds itself.
    /// @return the fate of every recipient, in their order.
    /// @throws RuntimeError 32000 when it fails before anybody's turn came (no server, refused
    /// login, a message that is too large).
    virtual std::vector<RecipientFate>
    hand_over(const QString &sender, const QStringList &recipients, const QByteArray &message) = 0;
};

/// The way out that a profile names. Opens nothing yet.
/// @param credentials  asked when a server wants to be signed on to.
/// @throws RuntimeError 32000 when this machine has no such program.
std::unique_ptr<MailWayOut> open_way_out(const MailProfile &profile,
                                         std::function<Credentials()> credentials,
                                         const NetworkConditions &conditions);
