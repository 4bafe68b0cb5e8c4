#include "mail/profile_rules.h"

#include <algorithm>

namespace
{
bool is_blank(const QString &text)
{
    return text.trimmed().isEmpty();
}

QString missing_in_server(const MailServer &server, const QString &protocol)
{
    if (is_blank(server.host))
        return QStringLiteral("it names no %1 server").arg(protocol);
    if (!is_host(server.host))
        return QStringLiteral("its %1 server '%2' is no host name").arg(protocol, server.host);
    if (server.sign_in != SignInKind::None && is_blank(server.user))
        return QStringLiteral("it names no user for the %1 server").arg(protocol);
    if (server.sign_in == SignInKind::Token && is_blank(server.token_command))
        return QStringLiteral("it names no token command for the %1 server").arg(protocol);
    return {};
}

bool is_host_character(QChar c)
{
    return c.isLetterOrNumber() || c == u'.' || c == u'-' || c == u'_' || c == u':' || c == u'%';
}
} // namespace

const MailServer *server_for(const MailProfile &profile, MailUse use)
{
    if (use == MailUse::Sending)
        return profile.outgoing == OutgoingKind::Smtp ? &profile.outgoing_server : nullptr;
    const bool is_remote = profile.inbox == InboxKind::Imap || profile.inbox == InboxKind::Pop3;
    return is_remote ? &profile.inbox_server : nullptr;
}

QString protocol_name(const MailProfile &profile, MailUse use)
{
    if (use == MailUse::Sending)
        return QStringLiteral("SMTP");
    return profile.inbox == InboxKind::Pop3 ? QStringLiteral("POP3") : QStringLiteral("IMAP");
}

quint16 default_port(const MailProfile &profile, MailUse use)
{
    struct Ports
    {
        quint16 tls, start_tls, plain;
    };
    const Ports ports = use == MailUse::Sending            ? Ports{465, 587, 25}
                        : profile.inbox == InboxKind::Pop3 ? Ports{995, 110, 110}
                                                           : Ports{993, 143, 143};
    const MailServer &server =
        use == MailUse::Sending ? profile.outgoing_server : profile.inbox_server;
    return server.security == LineSecurity::Tls        ? ports.tls
           : server.security == LineSecurity::StartTls ? ports.start_tls
                                                       : ports.plain;
}

QString missing_in(const MailProfile &profile, MailUse use)
{
    if (const MailServer *server = server_for(profile, use))
        return missing_in_server(*server, protocol_name(profile, use));
    if (use == MailUse::Reading && is_blank(profile.inbox_path)) {
        if (profile.inbox == InboxKind::Maildir)
            return QStringLiteral("it names no Maildir folder");
        if (profile.inbox == InboxKind::Mbox)
            return QStringLiteral("it names no mailbox file");
    }
    return {};
}

bool is_same_profile(const QString &name, const QString &other)
{
    return name.compare(other, Qt::CaseInsensitive) == 0;
}

bool is_host(const QString &text)
{
    constexpr qsizetype longest_name = 255; // RFC 1035 section 2.3.4
    const bool is_literal = text.startsWith(u'[') && text.endsWith(u']') && text.contains(u':');
    const QString host = is_literal ? text.sliced(1, text.size() - 2) : text;
    if (host.count(u':') == 1) // a port has a place of its own
        return false;
    return !host.isEmpty() && host.size() <= longest_name && host.front() != u'-' &&
           std::all_of(host.begin(), host.end(), is_host_character);
}

QString sign_on_name(const MailServer &server)
{
    return server.user.isEmpty() ? server.host
                                 : QStringLiteral("%1 on %2").arg(server.user, server.host);
}
