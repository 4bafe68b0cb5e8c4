#pragma once

#include "db/dialect.h"
#include "db/table_info.h"

class DatabaseFile;

/// A record source with its names looked up in the file.
struct QueryPlan
{
    SelectStatement select;
    TableInfo table;
    QStringList columns;
    QString shown; // the record source's text, for failures

    /// Whether the rows are all of the table's.
    bool is_whole_table() const { return !select.distinct && select.where.text.empty(); }
    bool can_update() const { return !select.distinct; }
};

/// @throws RuntimeError 3075, 93, 3078, 3061.
QueryPlan plan_query(DatabaseFile &file, const Statement &source);

/// A select of the row numbers in the source's order, or, for a distinct source, of the row numbers
/// and the columns: the numbers from the parameter `keys_from` up to the
/// parameter `keys_up_to`.
struct KeyQuery
{
    std::string sql;
    int keys_from;
    int keys_up_to;
};
KeyQuery key_query(const QueryPlan &plan);

/// A select of the row number and the columns, from the row number ?1 on.
std::string row_query(const QueryPlan &plan);
