#include "mail/service_lookup.h"

#include <QDnsLookup>
#include <QEventLoop>
#include <QTimer>

#include <memory>

namespace
{
using Lookups = std::vector<std::unique_ptr<QDnsLookup>>;

Lookups start_lookups(const QStringList &names, const QHostAddress &name_server)
{
    Lookups lookups;
    for (const QString &name : names) {
        auto lookup = std::make_unique<QDnsLookup>(QDnsLookup::SRV, name);
        if (!name_server.isNull())
            lookup->setNameserver(name_server);
        lookup->lookup();
        lookups.push_back(std::move(lookup));
    }
    return lookups;
}

void wait_for(const Lookups &lookups, std::chrono::milliseconds patience)
{
    QEventLoop loop;
    auto open = lookups.size();
    for (const auto &lookup : lookups) {
        QObject::connect(lookup.get(), &QDnsLookup::finished, &loop, [&] {
            if (--open == 0)
                loop.quit();
        });
    }
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    if (open > 0)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
}
} // namespace

ServiceResolver name_service(std::chrono::milliseconds patience, const QHostAddress &name_server)
{
    return [patience, name_server](const QStringList &names) {
        const Lookups lookups = start_lookups(names, name_server);
        wait_for(lookups, patience);
        std::vector<ServiceRecord> records;
        for (const auto &lookup : lookups) {
            const auto answered = lookup->serviceRecords(); // in the order of their preference
            for (const QDnsServiceRecord &record : answered)
                records.push_back({lookup->name(), record.target(), record.port()});
        }
        return records;
    };
}
