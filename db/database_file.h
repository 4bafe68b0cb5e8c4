#pragma once

#include "db/prepared_statement.h"
#include "db/table_info.h"
#include "platform/runtime_error.h"

#include <QString>
#include <SQLiteCpp/Database.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What an open file tells those who read it.
class FileReader
{
public:
    virtual ~FileReader() = default;

    /// The file is about to be changed: read transactions must end, so that the write-ahead log can
    /// be emptied, except for one that keeps a state (see below).
    virtual void before_write() = 0;
    /// Rows of `table` are about to change or go: who shows it must keep the state of now.
    virtual void before_change(const QString &table) = 0;
    /// The file is being closed; nothing of it may be held after this.
    virtual void before_close() = 0;
};

enum class Write { Insert, Update, Delete };

/// An open database file: the one connection that writes, and those who read. Every statement is in
/// the file when it returns (write-ahead log, synchronous=normal).
class DatabaseFile
{
public:
    /// @throws RuntimeError 3024 when there is no such file, 75 for a folder, 70 for one that may
    /// not be read, 3343 for one that is no database.
    DatabaseFile(QString native_path, QString shown_path);
    ~DatabaseFile();
    DatabaseFile(const DatabaseFile &) = delete;
    DatabaseFile &operator=(const DatabaseFile &) = delete;

    /// A further connection, for reading only.
    std::unique_ptr<SQLite::Database> open_reader() const;

    void add_reader(FileReader *reader);
    void remove_reader(FileReader *reader);

    /// @throws RuntimeError 3078 when there is no such table.
    const TableInfo &table(const QString &name);

    /// The highest row number of a table, 0 when it is empty. Costs nothing in the long run.
    std::int64_t last_row_number(const TableInfo &table);
    /// The table's rows, when known without counting.
    std::optional<std::int64_t> known_row_count(const TableInfo &table) const;
    void learn_row_count(const TableInfo &table, std::int64_t count);

    /// Forgets what is known of the tables when another program has changed the file.
    void notice_other_writers();

    /// Runs one writing statement. @return how many rows it wrote.
    /// @throws RuntimeError 3027 when the file cannot be written; as sqlite_failure.h.
    std::int64_t write(const TableInfo &table, Write kind, const std::string &sql,
                       const std::function<void(PreparedStatement &)> &bind, const QString &shown);

    /// A statement on the writing connection, kept prepared for the next time.
    PreparedStatement &prepared(const std::string &sql, const QString &shown);

    /// Runs `action` as one transaction, taken back when it throws.
    void in_transaction(const std::function<void()> &action);
    void require_writable() const;
    /// The writing connection, to read the state that it would write to.
    sqlite3 *writer() const { return writer_->getHandle(); }

    /// Closes everything that reads from the file.
    void close_readers();

private:
    struct Known
    {
        std::optional<std::int64_t> last_row_number;
        std::optional<std::int64_t> row_count;
    };
    std::unique_ptr<SQLite::Database> connect() const;
    bool start_write_ahead_log();
    void check_schema();
    RuntimeError opening_failure() const;
    void claim_transaction();
    void announce(const TableInfo &table, Write kind);
    void learn(const TableInfo &table, Write kind, std::int64_t rows);

    QString path_;
    QString shown_path_;
    bool writable_ = true;
    std::unique_ptr<SQLite::Database> writer_;
    std::map<std::string, PreparedStatement> statements_;
    std::map<QString, TableInfo> tables_; // by name in small letters
    std::map<QString, Known> known_;      // by the table's own name
    std::vector<FileReader *> readers_;
    std::uint32_t transactions_known_ = 0; // what is known above is of the state after so many
    bool in_transaction_ = false;
};
