#include "db/sql_failure.h"

namespace
{
// Statements carry whole messages and address lists; a report must fit on a screen.
constexpr qsizetype shown_characters = 1000;

QString shortened(const QString &text)
{
    if (text.size() <= shown_characters)
        return text;
    const qsizetype half = shown_characters / 2;
    return text.left(half) + QStringLiteral(" … ") + text.right(half);
}
} // namespace

RuntimeError syntax_failure(const QString &statement, const QString &reason)
{
    return {error_number::syntax_error, QStringLiteral("Syntax error in query expression '") +
                                            shortened(statement) + QStringLiteral("': ") + reason +
                                            QLatin1Char('.')};
}

RuntimeError unknown_column_failure(const QString &column)
{
    return {error_number::too_few_parameters,
            QStringLiteral("Too few parameters. Expected 1. There is no column '") +
                shortened(column) + QStringLiteral("'.")};
}

RuntimeError unknown_table_failure(const QString &table)
{
    return {error_number::table_not_found,
            QStringLiteral("The database engine cannot find the input table or query '") +
                shortened(table) +
                QStringLiteral("'. Make sure it exists and that its name is spelled correctly.")};
}
