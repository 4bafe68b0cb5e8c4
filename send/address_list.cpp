#include "send/address_list.h"

#include "db/data_connection.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QListWidget>
#include <QProgressBar>

namespace
{
constexpr qint64 turn_every = 50; // milliseconds
}

void fill_with_addresses(QListWidget &list, DataConnection &rows, QProgressBar &bar)
{
    QStringList read;
    QElapsedTimer since_turn;
    since_turn.start();
    const auto show_what_was_read = [&] {
        list.addItems(read);
        read.clear();
        bar.setValue(rows.record_set().percent_position());
    };
    // A turn may let another command put a new record set in place: it is asked for anew each time.
    for (rows.record_set().move_first(); !rows.record_set().eof(); rows.record_set().move_next()) {
        read.append(rows.record_set().field(QStringLiteral("email")));
        if (since_turn.elapsed() < turn_every)
            continue;
        show_what_was_read();
        QCoreApplication::processEvents();
        since_turn.restart();
        if (rows.record_set().eof())
            break;
    }
    show_what_was_read();
}
