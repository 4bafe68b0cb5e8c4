#include "send/address_list.h"

#include "db/data_connection.h"
#include "platform/progress_report.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QListWidget>
#include <QProgressBar>
#include <QScopeGuard>

namespace
{
constexpr qint64 turn_every = 50; // milliseconds
}

bool fill_with_addresses(QListWidget &list, DataConnection &rows, QProgressBar &bar,
                         ProgressReport &progress)
{
    const auto done = qScopeGuard([&progress] { progress.clear(); });
    QStringList read;
    QElapsedTimer since_turn;
    since_turn.start();
    const auto show_what_was_read = [&] {
        list.addItems(read);
        read.clear();
        bar.setValue(rows.record_set().percent_position());
        progress.tell(QStringLiteral("Address"), list.count(), rows.record_set().record_count());
    };
    bool is_replaced = false;
    const auto watch = QObject::connect(&rows, &DataConnection::rows_changed, &list,
                                        [&is_replaced] { is_replaced = true; });
    const auto watched = qScopeGuard([&watch] { QObject::disconnect(watch); });
    for (rows.record_set().move_first(); !rows.record_set().eof(); rows.record_set().move_next()) {
        read.append(rows.record_set().field(QStringLiteral("email")));
        if (since_turn.elapsed() < turn_every)
            continue;
        show_what_was_read();
        QCoreApplication::processEvents();
        since_turn.restart();
        if (is_replaced)
            return false;
    }
    show_what_was_read();
    return true;
}

void append_addresses(QListWidget &list, DataConnection &rows, ProgressReport &progress)
{
    const auto done = qScopeGuard([&progress] { progress.clear(); });
    QStringList read;
    RecordSet &set = rows.record_set();
    const qint64 count = set.record_count();
    for (set.move_first(); !set.eof(); set.move_next()) {
        read.append(set.field(QStringLiteral("email")));
        progress.tell(QStringLiteral("Address"), read.size(), count);
    }
    list.addItems(read);
}

QString joined_entries(const QListWidget &list)
{
    QStringList entries;
    entries.reserve(list.count());
    for (int i = 0; i < list.count(); ++i)
        entries.append(list.item(i)->text());
    return entries.join(QLatin1Char(';'));
}
