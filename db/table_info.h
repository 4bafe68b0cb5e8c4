#pragma once

#include <QString>
#include <QStringList>

#include <string>

struct sqlite3;

/// A table as the file has it.
struct TableInfo
{
    QString name; // as the file spells it
    QStringList columns;
    std::string row_number;   // the name of its row number: rowid, unless a column is called so
    bool numbers_grow = true; // whether new rows get a number above all others

    /// The index of a column, letter case ignored; -1 when there is none.
    int column(const QString &column_name) const;
};

/// @throws RuntimeError 3078 when the file has no such table.
TableInfo read_table_info(sqlite3 *database, const QString &name);
