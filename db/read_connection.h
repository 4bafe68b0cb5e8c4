#pragma once

#include <SQLiteCpp/Database.h>

#include <memory>

class DatabaseFile;

/// A reading connection to a file. It reads the newest state, or, once pinned, the one at that
/// moment.
class ReadConnection
{
public:
    explicit ReadConnection(const DatabaseFile &file);

    sqlite3 *handle() const { return database_->getHandle(); }

    /// Keeps the state of now (a snapshot in the write-ahead log) until unpin().
    void pin();
    void unpin();
    bool is_pinned() const { return pinned_; }

private:
    void run(const char *sql);

    std::unique_ptr<SQLite::Database> database_;
    bool pinned_ = false;
};
