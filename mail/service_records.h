#pragma once

#include "mail/server_proposal.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <vector>

/// A name service record that says where a service is (RFC 2782).
struct ServiceRecord
{
    QString name;   // "_imaps._tcp.example.org"
    QString target; // "." or empty: the domain has no such service
    quint16 port = 0;
};

/// Takes what a name service has answered, for each name the preferred record first.
using ServicesFound = std::function<void(const std::vector<ServiceRecord> &records)>;

/// Asks a name service for all records of these names and returns at once. What was answered in
/// time is given to `found`, once, unless `asker` is gone by then.
using ServiceResolver =
    std::function<void(const QStringList &names, QObject &asker, const ServicesFound &found)>;

/// The names under which a domain says where its mail servers are (RFC 6186 section 3, RFC 8314
/// section 5.1).
QStringList service_names(const QString &domain);

/// The servers that the records name: encrypted lines from the first byte on before STARTTLS. A
/// record whose target is no host name or whose port is 0 is passed over.
ServerProposal servers_from(const std::vector<ServiceRecord> &records, const QString &address);

/// The hosts of the proposal that lie outside the address's domain. Anybody who can forge an answer
/// of the name service could point there: a person must agree to them (RFC 6186 section 6).
QStringList foreign_hosts(const ServerProposal &proposal, const QString &address);
