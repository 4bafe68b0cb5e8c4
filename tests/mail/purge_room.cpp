#include "tests/mail/purge_room.h"

#include "db/schema.h"

#include <QDir>
#include <QFile>
#include <SQLiteCpp/SQLiteCpp.h>

namespace
{
const QString database = QStringLiteral("C:\\Ostrix\\Ostrix.mdb");
}

PurgeRoom::PurgeRoom()
{
    QDir().mkpath(home.file("data/Ostrix"));
    create_database(home.file("data/Ostrix/Ostrix.mdb"));
    please_wait.set_parent(&window);
    Text25.setText(database);
    Data1.set_database_name(database);
    Data2.set_database_name(database);
    Data1.set_record_source("system");
    Data2.set_record_source("master");
    Data1.refresh();
    Data2.refresh();
}

void PurgeRoom::insert_master(const QStringList &addresses)
{
    for (const QString &address : addresses) {
        Data2.record_set().add_new();
        Data2.record_set().set_field("email", address);
        Data2.record_set().update();
    }
    Data2.refresh();
}

void PurgeRoom::insert_system(const QString &email, const QString &subject, const QString &text)
{
    Data1.record_set().add_new();
    Data1.record_set().set_field("email", email);
    Data1.record_set().set_field("subject", subject);
    Data1.record_set().set_field("text", text);
    Data1.record_set().update();
    Data1.refresh();
}

QStringList PurgeRoom::column(const QString &table, const QString &name)
{
    DataConnection reader(engine);
    reader.set_database_name(database);
    reader.set_record_source(Statement::typed(table));
    reader.refresh();
    QStringList values;
    RecordSet &rows = reader.record_set();
    for (rows.move_first(); !rows.eof(); rows.move_next())
        values.append(rows.field(name));
    return values;
}

QString PurgeRoom::log_file(const QString &name) const
{
    QFile file(home.file("data/Ostrix/" + name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll())
                                          : QStringLiteral("(none)");
}

void PurgeRoom::write_last_batch(const QByteArray &content) const
{
    QFile file(home.file("data/Ostrix/system.log"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

void PurgeRoom::drop_table(const QString &table) const
{
    SQLite::Database file(home.file("data/Ostrix/Ostrix.mdb").toStdString(),
                          SQLite::OPEN_READWRITE);
    file.exec("drop table " + table.toStdString());
}
