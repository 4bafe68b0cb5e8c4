#include "db/table_info.h"

#include "db/prepared_statement.h"
#include "db/sql_failure.h"

#include <array>

namespace
{
std::string free_row_number(const TableInfo &table)
{
    static constexpr std::array names = {"rowid", "_rowid_", "oid"};
    for (const char *name : names) {
        if (table.column(QLatin1String(name)) < 0)
            return name;
    }
    throw unknown_table_failure(table.name);
}
} // namespace

int TableInfo::column(const QString &column_name) const
{
    for (int i = 0; i < columns.size(); ++i) {
        if (columns[i].compare(column_name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

TableInfo read_table_info(sqlite3 *database, const QString &name)
{
    // Views, virtual tables and tables without row numbers are none that a record set can show.
    PreparedStatement list(database,
                           "select name from pragma_table_list where schema = 'main' and "
                           "type = 'table' and wr = 0 and name = ?1 collate nocase",
                           name);
    list.bind(1, name);
    if (name.startsWith(QLatin1String("sqlite_"), Qt::CaseInsensitive) || !list.step())
        throw unknown_table_failure(name);
    TableInfo table;
    table.name = to_qstring(list.text(0));
    PreparedStatement columns(database, "select name, pk, type from pragma_table_info(?1)", name);
    columns.bind(1, table.name);
    while (columns.step()) {
        table.columns.append(to_qstring(columns.text(0)));
        // A whole-number key is the row number under a name of its own: anybody may choose it.
        if (columns.integer(1) != 0)
            table.numbers_grow = false;
    }
    table.row_number = free_row_number(table);
    return table;
}
