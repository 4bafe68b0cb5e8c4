#include "db/prepared_statement.h"

#include "db/sqlite_failure.h"

#include <sqlite3.h>

#include <utility>

void PreparedStatement::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

PreparedStatement::PreparedStatement(sqlite3 *database, const std::string &sql, QString shown)
    : database_(database),
      shown_(std::move(shown))
{
    sqlite3_stmt *statement = nullptr;
    const int result = sqlite3_prepare_v3(database, sql.c_str(), static_cast<int>(sql.size()) + 1,
                                          SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    statement_.reset(statement);
    if (result != SQLITE_OK)
        fail();
}

void PreparedStatement::bind(int parameter, std::int64_t value)
{
    if (sqlite3_bind_int64(statement_.get(), parameter, value) != SQLITE_OK)
        fail();
}

void PreparedStatement::bind(int parameter, const QString &value)
{
    const QByteArray utf8 = value.toUtf8();
    if (sqlite3_bind_text64(statement_.get(), parameter, utf8.constData(),
                            static_cast<sqlite3_uint64>(utf8.size()), SQLITE_TRANSIENT,
                            SQLITE_UTF8) != SQLITE_OK)
        fail();
}

bool PreparedStatement::step()
{
    const int result = sqlite3_step(statement_.get());
    if (result == SQLITE_ROW) {
        ++rows_read_;
        return true;
    }
    if (result != SQLITE_DONE)
        fail();
    reset();
    return false;
}

void PreparedStatement::run()
{
    step();
    reset();
}

void PreparedStatement::reset()
{
    sqlite3_reset(statement_.get()); // repeats the error of the last step, which was thrown then
}

std::int64_t PreparedStatement::integer(int column) const
{
    return sqlite3_column_int64(statement_.get(), column);
}

bool PreparedStatement::is_null(int column) const
{
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

std::string_view PreparedStatement::text(int column) const
{
    const auto *bytes =
        reinterpret_cast<const char *>(sqlite3_column_text(statement_.get(), column));
    if (bytes == nullptr)
        return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

void PreparedStatement::fail() const
{
    const RuntimeError error = sqlite_failure(database_, shown_);
    if (statement_ != nullptr)
        sqlite3_reset(statement_.get());
    throw error;
}

QString to_qstring(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}
