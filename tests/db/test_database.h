#pragma once

#include "db/data_connection.h"
#include "db/database_engine.h"
#include "platform/runtime_error.h"
#include "tests/support/private_home.h"

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

/// The number of the RuntimeError that `action` throws, 0 when it throws none.
template <typename Action>
int number_of(Action action)
{
    try {
        action();
    } catch (const RuntimeError &error) {
        return error.number();
    }
    return 0;
}

/// The description of the RuntimeError that `action` throws.
template <typename Action>
QString description_of(Action action)
{
    try {
        action();
    } catch (const RuntimeError &error) {
        return error.description();
    }
    return QStringLiteral("(no error)");
}

/// Runs SQL on a database file by a connection of its own, as another program would.
void run_sql(const QString &path, const QString &sql);

/// A column of all records from the first one on.
QStringList walk(DataConnection &connection, const QString &column);

/// Two connections to a fresh database file with the five tables, as the main window has them.
class DatabaseTest : public testing::Test
{
protected:
    DatabaseTest();

    QString path() const;
    /// Points a connection at a source and refreshes it.
    static void show(DataConnection &connection, const QString &source);
    /// Adds a row to each e-mail address by a connection of its own.
    void insert_master(const QStringList &addresses);

    const PrivateHome home;
    DatabaseEngine engine;
    DataConnection Data1{engine};
    DataConnection Data2{engine};
};
