#include "db/database_file.h"

#include "db/change_counter.h"
#include "db/dialect.h"
#include "db/like_function.h"
#include "db/sqlite_failure.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QUrl>
#include <sqlite3.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace
{
constexpr int busy_milliseconds = 2000;
constexpr std::size_t max_statements = 64;
// 16 MB for each connection: the system keeps the file's pages as well, more is memory only.
constexpr const char *tuning = "pragma cache_size = -16384; pragma temp_store = memory";
constexpr int max_value_bytes = 256 << 20;

RuntimeError no_database(const QString &path)
{
    return {error_number::unrecognised_database,
            QStringLiteral("Unrecognized database format '%1'.").arg(path)};
}

void check_is_database(const QString &path, const QString &shown)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists())
        throw RuntimeError(error_number::could_not_find_file,
                           QStringLiteral("Could not find file '%1'.").arg(shown));
    if (!info.isFile())
        throw RuntimeError(error_number::path_file_access,
                           QStringLiteral("This is a folder, not a database: '%1'").arg(shown));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeError(error_number::permission_denied,
                           QStringLiteral("The database cannot be read: '%1' (%2)")
                               .arg(shown, file.errorString()));
    // SQLite takes an empty file for an empty database, and makes one of it.
    if (file.read(16) != QByteArray("SQLite format 3\0", 16))
        throw no_database(shown);
}

// The file may come from anywhere: what its schema holds must not run on its own.
void distrust_schema(sqlite3 *database)
{
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    // A name in double quotes that no column has is an error, not a text.
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_limit(database, SQLITE_LIMIT_LENGTH, max_value_bytes);
}
} // namespace

DatabaseFile::DatabaseFile(QString native_path, QString shown_path)
    : path_(std::move(native_path)),
      shown_path_(std::move(shown_path))
{
    check_is_database(path_, shown_path_);
    writer_ = connect();
    if (!start_write_ahead_log()) {
        writable_ = false;
        writer_ = connect();
    }
    check_schema();
    transactions_known_ = transactions_counted(writer());
}

DatabaseFile::~DatabaseFile()
{
    statements_.clear(); // before their connection
}

// A file that cannot be written, or whose folder cannot, has no write-ahead log: it is read as it
// lies there.
std::unique_ptr<SQLite::Database> DatabaseFile::connect() const
{
    const int flags = writable_ ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    const std::string uri = "file:" + QUrl::toPercentEncoding(path_, "/").toStdString() +
                            (writable_ ? "" : "?immutable=1");
    try {
        auto database = std::make_unique<SQLite::Database>(
            uri, flags | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, busy_milliseconds);
        distrust_schema(database->getHandle());
        add_dialect_functions(database->getHandle());
        return database;
    } catch (const SQLite::Exception &error) {
        throw RuntimeError(error_number::permission_denied,
                           QStringLiteral("The database cannot be opened: '%1' (%2)")
                               .arg(shown_path_, QString::fromUtf8(error.what())));
    }
}

bool DatabaseFile::start_write_ahead_log()
{
    if (sqlite3_db_readonly(writer(), "main") == 1)
        return false;
    const int result = writer_->tryExec("pragma journal_mode = wal; pragma synchronous = normal; "
                                        "select count(*) from sqlite_schema");
    const bool forbidden =
        result == SQLITE_READONLY || result == SQLITE_CANTOPEN || result == SQLITE_PERM;
    if (result != SQLITE_OK && !forbidden)
        throw opening_failure();
    return !forbidden;
}

void DatabaseFile::check_schema()
{
    if (writer_->tryExec(tuning) == SQLITE_OK &&
        writer_->tryExec("select count(*) from sqlite_schema") == SQLITE_OK)
        return;
    throw opening_failure();
}

RuntimeError DatabaseFile::opening_failure() const
{
    const RuntimeError error = sqlite_failure(writer(), shown_path_);
    return error.number() == error_number::unrecognised_database ? no_database(shown_path_) : error;
}

// Exactly one more transaction is our own; with two, another program's came in between.
void DatabaseFile::claim_transaction()
{
    const std::uint32_t counted = transactions_counted(writer());
    if (counted == transactions_known_ + 1)
        transactions_known_ = counted;
}

std::unique_ptr<SQLite::Database> DatabaseFile::open_reader() const
{
    auto reader = connect();
    if (reader->tryExec(tuning) != SQLITE_OK ||
        reader->tryExec("pragma query_only = on") != SQLITE_OK)
        throw sqlite_failure(reader->getHandle(), shown_path_);
    return reader;
}

void DatabaseFile::add_reader(FileReader *reader)
{
    readers_.push_back(reader);
}

void DatabaseFile::remove_reader(FileReader *reader)
{
    readers_.erase(std::remove(readers_.begin(), readers_.end(), reader), readers_.end());
}

const TableInfo &DatabaseFile::table(const QString &name)
{
    const QString key = name.toLower();
    const auto known = tables_.find(key);
    if (known != tables_.end())
        return known->second;
    return tables_.emplace(key, read_table_info(writer(), name)).first->second;
}

std::int64_t DatabaseFile::last_row_number(const TableInfo &table)
{
    auto &last = known_[table.name].last_row_number;
    if (!last) {
        PreparedStatement &statement = prepared(
            "select max(" + table.row_number + ") from " + quoted_name(table.name), table.name);
        statement.step();
        last = statement.integer(0);
        statement.reset();
    }
    return *last;
}

std::optional<std::int64_t> DatabaseFile::known_row_count(const TableInfo &table) const
{
    const auto known = known_.find(table.name);
    return known == known_.end() ? std::nullopt : known->second.row_count;
}

void DatabaseFile::learn_row_count(const TableInfo &table, std::int64_t count)
{
    known_[table.name].row_count = count;
}

void DatabaseFile::notice_other_writers()
{
    const std::uint32_t counted = transactions_counted(writer());
    if (counted == transactions_known_)
        return;
    transactions_known_ = counted;
    known_.clear();
    tables_.clear();
}

std::int64_t DatabaseFile::write(const TableInfo &table, Write kind, const std::string &sql,
                                 const std::function<void(PreparedStatement &)> &bind,
                                 const QString &shown)
{
    require_writable();
    prepared(sql, shown); // a statement that is none fails before anybody hears of it
    announce(table, kind);
    // Fetched anew: readers who prepared something may have emptied the cache.
    PreparedStatement &statement = prepared(sql, shown);
    bind(statement);
    try {
        statement.run();
    } catch (const RuntimeError &) {
        known_.erase(table.name);
        throw;
    }
    const std::int64_t rows = sqlite3_changes64(writer());
    // An update that changes nothing is no transaction, so that one more may be another program's.
    if (rows > 0 && kind != Write::Update && !in_transaction_)
        claim_transaction();
    learn(table, kind, rows);
    return rows;
}

PreparedStatement &DatabaseFile::prepared(const std::string &sql, const QString &shown)
{
    const auto known = statements_.find(sql);
    if (known != statements_.end()) {
        known->second.set_shown(shown);
        return known->second;
    }
    if (statements_.size() >= max_statements)
        statements_.clear();
    return statements_.emplace(sql, PreparedStatement(writer(), sql, shown)).first->second;
}

// New rows get numbers above those that a reader shows, so a reader need not care about them.
void DatabaseFile::announce(const TableInfo &table, Write kind)
{
    constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
    const bool only_adds =
        kind == Write::Insert && table.numbers_grow && last_row_number(table) < highest;
    for (FileReader *reader : readers_) {
        if (!only_adds)
            reader->before_change(table.name);
        reader->before_write();
    }
}

void DatabaseFile::learn(const TableInfo &table, Write kind, std::int64_t rows)
{
    Known &known = known_[table.name];
    if (kind == Write::Insert && table.numbers_grow && rows > 0)
        known.last_row_number = sqlite3_last_insert_rowid(writer());
    else if (rows > 0)
        known.last_row_number.reset();
    if (known.row_count && kind != Write::Update)
        *known.row_count += kind == Write::Insert ? rows : -rows;
}

void DatabaseFile::in_transaction(const std::function<void()> &action)
{
    require_writable();
    prepared("begin immediate", shown_path_).run();
    in_transaction_ = true;
    const auto ended = qScopeGuard([this] { in_transaction_ = false; });
    try {
        const std::int64_t changes_before = sqlite3_total_changes64(writer());
        action();
        const bool has_changes = sqlite3_total_changes64(writer()) != changes_before;
        prepared("commit", shown_path_).run();
        if (has_changes)
            claim_transaction();
    } catch (const RuntimeError &) {
        known_.clear();
        attempt([this] { prepared("rollback", shown_path_).run(); });
        throw;
    }
}

void DatabaseFile::require_writable() const
{
    if (!writable_)
        throw RuntimeError(error_number::cannot_update,
                           QStringLiteral("Cannot update. Database or object is read-only: '%1'")
                               .arg(shown_path_));
}

void DatabaseFile::close_readers()
{
    const std::vector<FileReader *> readers = readers_;
    for (FileReader *reader : readers)
        reader->before_close();
}
