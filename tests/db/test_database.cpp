#include "tests/db/test_database.h"

#include "db/schema.h"
#include "platform/drive_path.h"

#include <QDir>
#include <SQLiteCpp/Database.h>

void run_sql(const QString &path, const QString &sql)
{
    SQLite::Database database(path.toStdString(), SQLite::OPEN_READWRITE, 2000);
    database.exec(sql.toStdString());
}

QStringList walk(DataConnection &connection, const QString &column)
{
    QStringList fields;
    RecordSet &set = connection.record_set();
    for (set.move_first(); !set.eof(); set.move_next())
        fields.append(set.field(column));
    return fields;
}

DatabaseTest::DatabaseTest()
{
    QDir().mkpath(data_folder() + QStringLiteral("/Ostrix"));
    create_database(QStringLiteral("C:\\Ostrix\\Ostrix.mdb"));
    for (DataConnection *connection : {&Data1, &Data2})
        connection->set_database_name(QStringLiteral("C:\\Ostrix\\Ostrix.mdb"));
}

QString DatabaseTest::path() const
{
    return native_path(QStringLiteral("C:\\Ostrix\\Ostrix.mdb"));
}

void DatabaseTest::show(DataConnection &connection, const QString &source)
{
    connection.set_record_source(Statement::typed(source));
    connection.refresh();
}

void DatabaseTest::insert_master(const QStringList &addresses)
{
    DataConnection connection(engine);
    connection.set_database_name(path());
    show(connection, QStringLiteral("master"));
    for (const QString &address : addresses) {
        connection.record_set().add_new();
        connection.record_set().set_field(QStringLiteral("email"), address);
        connection.record_set().update();
    }
}
