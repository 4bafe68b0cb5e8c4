#include "mail/service_lookup.h"

#include <QDnsLookup>
#include <QTimer>

#include <memory>
#include <utility>

namespace
{
/// One question, which goes with its asker or when it is answered.
class Question : public QObject
{
public:
    Question(QObject &asker, ServicesFound found) : QObject(&asker), found_(std::move(found)) {}

    void ask(const QStringList &names, const QHostAddress &name_server,
             std::chrono::milliseconds patience)
    {
        for (const QString &name : names) {
            lookups_.push_back(std::make_unique<QDnsLookup>(QDnsLookup::SRV, name));
            QDnsLookup &lookup = *lookups_.back();
            if (!name_server.isNull())
                lookup.setNameserver(name_server);
            connect(&lookup, &QDnsLookup::finished, this, [this] { count_answer(); });
            lookup.lookup();
        }
        // Not from within a look-up's signal: whoever is told may remove all this.
        connect(&end_, &QTimer::timeout, this, [this] { tell(); });
        end_.setSingleShot(true);
        end_.start(names.isEmpty() ? std::chrono::milliseconds(0) : patience);
    }

private:
    void count_answer()
    {
        if (++answered_ == lookups_.size())
            end_.start(0);
    }

    void tell()
    {
        std::vector<ServiceRecord> records;
        for (const auto &lookup : lookups_) {
            const auto answered = lookup->serviceRecords(); // in the order of their preference
            for (const QDnsServiceRecord &record : answered)
                records.push_back({lookup->name(), record.target(), record.port()});
        }
        const ServicesFound found = std::move(found_);
        deleteLater();
        found(records);
    }

    ServicesFound found_;
    std::vector<std::unique_ptr<QDnsLookup>> lookups_;
    std::size_t answered_ = 0;
    QTimer end_;
};
} // namespace

ServiceResolver name_service(std::chrono::milliseconds patience, const QHostAddress &name_server)
{
    return [patience, name_server](const QStringList &names, QObject &asker,
                                   const ServicesFound &found) {
        auto *question = new Question(asker, found); // goes with its parent
        question->ask(names, name_server, patience);
    };
}
