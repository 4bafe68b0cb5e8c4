#include "db/statement.h"

#include "db/sql_failure.h"

Statement Statement::typed(const QString &source)
{
    Statement statement;
    statement.text_ = source;
    return statement;
}

Statement Statement::after(const char *fixed, const QString &value) const
{
    Statement longer;
    longer.text_ = QString::fromUtf8(fixed) + value + text_;
    longer.broken_ = broken_ || value.contains(QLatin1Char('\''));
    return longer;
}

void Statement::check_values() const
{
    if (broken_)
        throw syntax_failure(text_, QStringLiteral("a value holds a single quote"));
}
