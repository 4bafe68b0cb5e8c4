#include "db/row_purge.h"

#include "db/dialect.h"
#include "db/multi_matcher.h"
#include "db/sql_failure.h"

#include <algorithm>

namespace
{
struct TablePurge
{
    const TableInfo *table;
    QStringList columns;
    std::vector<std::int64_t> rows; // to be deleted
};

void check_values(const QStringList &values)
{
    static const QString wildcards = QStringLiteral("*?#[");
    for (const QString &value : values) {
        if (value.contains(QLatin1Char('\'')))
            throw syntax_failure(QStringLiteral("like '*%1*'").arg(value),
                                 QStringLiteral("a value holds a single quote"));
        if (std::any_of(value.begin(), value.end(), [](QChar c) { return wildcards.contains(c); }))
            throw RuntimeError(error_number::invalid_call,
                               QStringLiteral("This value holds a wildcard: '%1'").arg(value));
    }
}

std::vector<TablePurge> purges_by_table(DatabaseFile &file, std::span<const TableColumn> targets)
{
    std::vector<TablePurge> purges;
    for (const TableColumn &target : targets) {
        const TableInfo *table = &file.table(target.table);
        const int column = table->column(target.column);
        if (column < 0)
            throw unknown_column_failure(target.column);
        const auto known = std::find_if(purges.begin(), purges.end(), [table](const auto &purge) {
            return purge.table->name == table->name;
        });
        if (known == purges.end())
            purges.push_back({table, {table->columns[column]}, {}});
        else
            known->columns.append(table->columns[column]);
    }
    return purges;
}

std::string scan_query(const TablePurge &purge)
{
    std::string sql = "select " + purge.table->row_number;
    for (const QString &column : purge.columns)
        sql += ", " + quoted_name(column);
    return sql + " from " + quoted_name(purge.table->name);
}

bool row_matches(const PreparedStatement &row, qsizetype columns, const MultiMatcher &matcher)
{
    for (int column = 1; column <= columns; ++column) {
        if (!row.is_null(column) && matcher.matches(row.text(column)))
            return true;
    }
    return false;
}

void find_rows(DatabaseFile &file, TablePurge &purge, const MultiMatcher &matcher)
{
    PreparedStatement scan(file.writer(), scan_query(purge), purge.table->name);
    while (scan.step()) {
        if (row_matches(scan, purge.columns.size(), matcher))
            purge.rows.push_back(scan.integer(0));
    }
}

void delete_rows(DatabaseFile &file, const TablePurge &purge)
{
    const std::string sql = "delete from " + quoted_name(purge.table->name) + " where " +
                            purge.table->row_number + " = ?1";
    for (const std::int64_t row : purge.rows)
        file.write(
            *purge.table, Write::Delete, sql,
            [row](PreparedStatement &statement) { statement.bind(1, row); }, purge.table->name);
}
} // namespace

void purge_rows(DatabaseFile &file, std::span<const TableColumn> targets, const QStringList &values)
{
    check_values(values);
    std::vector<TablePurge> purges = purges_by_table(file, targets);
    file.require_writable();
    for (qsizetype next = 0; next < values.size();) {
        const MultiMatcher matcher(values, next);
        next = matcher.end();
        for (TablePurge &purge : purges)
            find_rows(file, purge, matcher);
    }
    // A row that several batches of values matched is simply gone the second time.
    file.in_transaction([&] {
        for (const TablePurge &purge : purges)
            delete_rows(file, purge);
    });
}
