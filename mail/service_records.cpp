#include "mail/service_records.h"

#include "mail/profile_rules.h"

#include <algorithm>
#include <array>

namespace
{
struct Service
{
    const char *label;
    MailServer ServerProposal::*server;
    LineSecurity security;
};

// For each protocol the better protected line first.
constexpr std::array services = {
    Service{"_imaps._tcp", &ServerProposal::imap, LineSecurity::Tls},
    Service{"_imap._tcp", &ServerProposal::imap, LineSecurity::StartTls},
    Service{"_pop3s._tcp", &ServerProposal::pop3, LineSecurity::Tls},
    Service{"_pop3._tcp", &ServerProposal::pop3, LineSecurity::StartTls},
    Service{"_submissions._tcp", &ServerProposal::smtp, LineSecurity::Tls},
    Service{"_submission._tcp", &ServerProposal::smtp, LineSecurity::StartTls}};

QString service_name(const Service &service, const QString &domain)
{
    return QLatin1String(service.label) + u'.' + domain;
}

QString host_of(QString target)
{
    if (target.endsWith(u'.'))
        target.chop(1);
    return target.toLower();
}

bool is_in_domain(const QString &host, const QString &domain)
{
    return host == domain || host.endsWith(u'.' + domain);
}
} // namespace

QStringList service_names(const QString &domain)
{
    QStringList names;
    for (const Service &service : services)
        names += service_name(service, domain);
    return names;
}

ServerProposal servers_from(const std::vector<ServiceRecord> &records, const QString &address)
{
    const QString domain = mail_domain(address);
    ServerProposal proposal;
    for (const Service &service : services) {
        MailServer &server = proposal.*service.server;
        const QString name = service_name(service, domain);
        const auto record = std::find_if(records.begin(), records.end(), [&](const auto &answered) {
            return answered.name.compare(name, Qt::CaseInsensitive) == 0 && answered.port != 0 &&
                   is_host(host_of(answered.target));
        });
        if (!server.host.isEmpty() || record == records.end())
            continue;
        server.host = host_of(record->target);
        server.port = record->port;
        server.security = service.security;
        server.user = address.trimmed();
    }
    return proposal;
}

QStringList foreign_hosts(const ServerProposal &proposal, const QString &address)
{
    const QString domain = mail_domain(address);
    QStringList hosts;
    for (const MailServer &server : {proposal.imap, proposal.pop3, proposal.smtp}) {
        if (!server.host.isEmpty() && !is_in_domain(server.host, domain))
            hosts += server.host;
    }
    hosts.removeDuplicates();
    return hosts;
}
