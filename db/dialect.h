#pragma once

#include "db/statement.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/// SQL with its literals taken out: `text` holds ?1, ?2, … for `literals`, so that statements that
/// differ in a value only are prepared once.
struct SqlText
{
    std::string text;
    QStringList literals;
};

struct OrderTerm
{
    QString column;
    bool descending = false;
};

/// A record source taken apart:  select [distinct] LIST from TABLE [where …] [order by …].
struct SelectStatement
{
    QString table;
    QStringList columns; // empty for *
    bool distinct = false;
    SqlText where; // empty text without a condition
    std::vector<OrderTerm> order;
};

enum class Action { Insert, Delete, Update };

struct ActionStatement
{
    Action action = Action::Insert;
    QString table;
    SqlText sql;
};

/// Reads a table's name or a select over one table. Blanks may stand anywhere; a semicolon may end
/// it.
/// @throws RuntimeError 3075 for everything else (joins, groups, unions, a second statement …), 93
/// for a pattern that is none.
SelectStatement parse_record_source(const Statement &source);

/// Reads a delete, insert or update and turns it into SQLite's SQL: `delete *` loses its asterisk,
/// compared text is compared without regard to letter case.
/// @throws RuntimeError as parse_record_source().
ActionStatement parse_action(const Statement &statement);

/// A name as SQL writes it, whatever characters it holds.
std::string quoted_name(const QString &name);

/// The collation that compares text without regard to letter case (letter_case.h).
inline constexpr const char *letters_collation = "letters";
