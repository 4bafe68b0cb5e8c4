#include "db/query_plan.h"

#include "db/database_file.h"
#include "db/sql_failure.h"

namespace
{
QString known_column(const TableInfo &table, const QString &name)
{
    const int index = table.column(name);
    if (index < 0)
        throw unknown_column_failure(name);
    return table.columns[index];
}

std::string column_list(const QueryPlan &plan)
{
    std::string list = plan.table.row_number;
    for (const QString &column : plan.columns)
        list += ", " + quoted_name(column);
    return list;
}

std::string order_list(const QueryPlan &plan)
{
    std::string list = " order by ";
    for (const OrderTerm &term : plan.select.order) {
        list += quoted_name(term.column) + " collate " + letters_collation;
        list += term.descending ? " desc, " : ", ";
    }
    return list + plan.table.row_number;
}
} // namespace

QueryPlan plan_query(DatabaseFile &file, const Statement &source)
{
    QueryPlan plan{parse_record_source(source), {}, {}, source.text()};
    plan.table = file.table(plan.select.table);
    for (const QString &name : plan.select.columns)
        plan.columns.append(known_column(plan.table, name));
    if (plan.columns.isEmpty())
        plan.columns = plan.table.columns;
    for (OrderTerm &term : plan.select.order)
        term.column = known_column(plan.table, term.column);
    return plan;
}

KeyQuery key_query(const QueryPlan &plan)
{
    const auto literals = static_cast<int>(plan.select.where.literals.size());
    KeyQuery query{{}, literals + 1, literals + 2};
    const std::string &key = plan.table.row_number;
    query.sql = "select " + (plan.select.distinct ? column_list(plan) : key) + " from " +
                quoted_name(plan.table.name) + " where " + key + " >= ?" +
                std::to_string(query.keys_from) + " and " + key + " <= ?" +
                std::to_string(query.keys_up_to);
    if (!plan.select.where.text.empty())
        query.sql += " and (" + plan.select.where.text + ")";
    query.sql += order_list(plan);
    return query;
}

std::string row_query(const QueryPlan &plan)
{
    const std::string &key = plan.table.row_number;
    return "select " + column_list(plan) + " from " + quoted_name(plan.table.name) + " where " +
           key + " >= ?1 order by " + key;
}
