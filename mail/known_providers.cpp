#include "mail/known_providers.h"

#include "mail/profile_rules.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace
{
constexpr auto app_password =
    "This provider wants a password made for this program in its account settings, not the one of "
    "its web page.";
constexpr auto token_only =
    "This provider takes no password from mail programs: name a command that prints an OAuth 2 "
    "access token.";
constexpr auto switch_on =
    "At this provider reading by other programs must first be allowed in its account settings.";

/// A row of the table. SMTP with port 587 is STARTTLS, all else is encrypted from the first byte
/// on. Read at the providers' help pages.
struct Provider
{
    const char *domains; // parted by blanks
    const char *imap;
    const char *pop3; // null where there is none
    const char *smtp;
    quint16 smtp_port;
    const char *note; // null for none
};

constexpr Provider providers[] = {
    {"gmail.com googlemail.com", "imap.gmail.com", "pop.gmail.com", "smtp.gmail.com", 465,
     app_password},
    {"outlook.com hotmail.com live.com msn.com", "outlook.office365.com", "outlook.office365.com",
     "smtp-mail.outlook.com", 587, token_only},
    {"yahoo.com yahoo.co.uk yahoo.de yahoo.fr ymail.com rocketmail.com", "imap.mail.yahoo.com",
     "pop.mail.yahoo.com", "smtp.mail.yahoo.com", 465, app_password},
    {"icloud.com me.com mac.com", "imap.mail.me.com", nullptr, "smtp.mail.me.com", 587,
     app_password},
    {"aol.com", "imap.aol.com", "pop.aol.com", "smtp.aol.com", 465, app_password},
    {"gmx.net gmx.de gmx.at gmx.ch", "imap.gmx.net", "pop.gmx.net", "mail.gmx.net", 465, switch_on},
    {"gmx.com gmx.us gmx.co.uk", "imap.gmx.com", "pop.gmx.com", "mail.gmx.com", 465, switch_on},
    {"web.de", "imap.web.de", "pop3.web.de", "smtp.web.de", 587, switch_on},
    {"t-online.de", "secureimap.t-online.de", "securepop.t-online.de", "securesmtp.t-online.de",
     465, app_password},
    {"fastmail.com fastmail.fm", "imap.fastmail.com", "pop.fastmail.com", "smtp.fastmail.com", 465,
     app_password},
    {"mailbox.org", "imap.mailbox.org", "pop3.mailbox.org", "smtp.mailbox.org", 465, nullptr},
    {"posteo.de posteo.net", "posteo.de", "posteo.de", "posteo.de", 465, nullptr},
    {"zoho.com zohomail.com", "imap.zoho.com", "pop.zoho.com", "smtp.zoho.com", 465, switch_on},
    {"yandex.com yandex.ru ya.ru", "imap.yandex.com", "pop.yandex.com", "smtp.yandex.com", 465,
     app_password},
    {"mail.ru inbox.ru list.ru bk.ru", "imap.mail.ru", "pop.mail.ru", "smtp.mail.ru", 465,
     app_password},
};

MailServer server(const QString &host, quint16 port, const QString &user, const char *note)
{
    if (host.isEmpty())
        return {};
    MailServer made;
    made.host = host;
    made.port = port;
    made.security = port == 587 ? LineSecurity::StartTls : LineSecurity::Tls;
    made.sign_in = note == token_only ? SignInKind::Token : SignInKind::Password;
    made.user = user;
    return made;
}
} // namespace

QString mail_domain(const QString &address)
{
    const qsizetype at = address.lastIndexOf(u'@');
    return at < 1 ? QString() : address.mid(at + 1).trimmed().toLower();
}

std::optional<ServerProposal> known_servers(const QString &address)
{
    const QString domain = mail_domain(address);
    const auto found =
        std::find_if(std::begin(providers), std::end(providers), [&](const Provider &provider) {
            return QString::fromLatin1(provider.domains).split(u' ').contains(domain);
        });
    if (found == std::end(providers))
        return std::nullopt;
    const QString user = address.trimmed();
    return ServerProposal{server(QLatin1String(found->imap), 993, user, found->note),
                          server(QLatin1String(found->pop3), 995, user, found->note),
                          server(QLatin1String(found->smtp), found->smtp_port, user, found->note),
                          QString::fromLatin1(found->note)};
}

ServerProposal guessed_servers(const QString &address)
{
    const QString domain = mail_domain(address);
    if (!is_host(domain))
        return {};
    const QString user = address.trimmed();
    return {server(QStringLiteral("imap.") + domain, 993, user, nullptr),
            server(QStringLiteral("pop.") + domain, 995, user, nullptr),
            server(QStringLiteral("smtp.") + domain, 465, user, nullptr), QString()};
}
