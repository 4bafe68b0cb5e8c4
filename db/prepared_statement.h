#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

/// A prepared statement, for what is run often: values go in and come out without a copy.
/// Every failure is a RuntimeError (sqlite_failure.h).
class PreparedStatement
{
public:
    /// `shown` is the text that failures quote.
    PreparedStatement(sqlite3 *database, const std::string &sql, QString shown);

    void set_shown(const QString &shown) { shown_ = shown; }

    /// Parameters count from 1.
    void bind(int parameter, std::int64_t value);
    void bind(int parameter, const QString &value);

    /// Moves to the next row. @return false when there is none; the statement is then reset.
    bool step();
    /// Steps once and resets: for statements without rows.
    void run();
    /// Ends the walk: the statement no longer holds a state of the database.
    void reset();

    /// The current row's columns count from 0.
    std::int64_t integer(int column) const;
    bool is_null(int column) const;
    /// UTF-8, valid until the next step() or reset(); empty for a NULL.
    std::string_view text(int column) const;

    /// All rows stepped to since the statement was made.
    std::int64_t rows_read() const { return rows_read_; }

private:
    [[noreturn]] void fail() const;

    struct Finalize
    {
        void operator()(sqlite3_stmt *statement) const;
    };
    sqlite3 *database_;
    QString shown_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    std::int64_t rows_read_ = 0;
};

QString to_qstring(std::string_view utf8);
