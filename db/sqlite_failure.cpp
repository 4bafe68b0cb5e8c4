#include "db/sqlite_failure.h"

#include "db/like_function.h"
#include "db/sql_failure.h"

#include <sqlite3.h>

#include <optional>

namespace
{
// SQLite's own words for names that it does not find (src/resolve.c, src/build.c, src/insert.c).
std::optional<RuntimeError> name_failure(const QString &message)
{
    const auto name_after = [&message](const char *words) {
        const qsizetype start = message.indexOf(QLatin1String(words));
        return start < 0 ? QString() : message.mid(start + qsizetype(qstrlen(words)));
    };
    if (const QString table = name_after("no such table: "); !table.isEmpty())
        return unknown_table_failure(table);
    if (const QString column = name_after("no such column: "); !column.isEmpty())
        return unknown_column_failure(column);
    if (const QString column = name_after("has no column named "); !column.isEmpty())
        return unknown_column_failure(column);
    return std::nullopt;
}

int file_failure_number(int code)
{
    switch (code) {
    case SQLITE_READONLY:
        return error_number::cannot_update;
    case SQLITE_FULL:
        return error_number::disk_full;
    case SQLITE_IOERR:
        return error_number::device_io_error;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_CANTOPEN:
        return error_number::permission_denied;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return error_number::unrecognised_database;
    default:
        return 0;
    }
}
} // namespace

RuntimeError sqlite_failure(sqlite3 *database, const QString &subject)
{
    const QString message = QString::fromUtf8(sqlite3_errmsg(database));
    if (message.startsWith(QLatin1String(invalid_pattern_words)))
        return {error_number::invalid_pattern, message};
    if (const auto failure = name_failure(message))
        return *failure;
    const int number = file_failure_number(sqlite3_errcode(database) & 0xFF);
    if (number == 0)
        return syntax_failure(subject, message);
    return {number, QStringLiteral("The database failed at '") + subject.left(200) +
                        QStringLiteral("': ") + message};
}
