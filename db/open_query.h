#pragma once

#include "db/query_plan.h"
#include "db/read_connection.h"
#include "db/row_cursor.h"
#include "db/row_keys.h"

#include <Qt>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

class DatabaseFile;

/// The first `limit` characters (UTF-16 units); a surrogate pair is not torn.
QString cut_text(QString text, qsizetype limit);

/// A record source's rows as they were at the last restart().
///
/// They are not read then. While rows of the table are only added, the newest state shows the same
/// rows: the new ones have higher numbers and are left out. Before rows change or go, the reading
/// connection is pinned to the state of that moment.
class OpenQuery
{
public:
    /// @throws RuntimeError 3075, 93, 3078, 3061 (the record source).
    OpenQuery(std::shared_ptr<DatabaseFile> file, std::shared_ptr<ReadConnection> reader,
              const Statement &source);

    DatabaseFile &file() const { return *file_; }
    const QueryPlan &plan() const { return plan_; }

    /// The rows are those of now.
    void restart();

    std::int64_t count();
    bool has(std::int64_t position) { return keys_.has(position); }
    std::int64_t row_number(std::int64_t position) const { return keys_.at(position); }

    /// A field of a row, valid until the next call; empty for a NULL.
    std::string_view text(std::int64_t row_number, int column);

    /// The fields of a row, each cut to `widest_cell` characters; kept for the next time.
    const QStringList &cells(std::int64_t position);
    static constexpr qsizetype widest_cell = 2000;

    void sort(int column, Qt::SortOrder order);

    /// Calls `visit` with the number of every row, from the first to the last. A whole table in its
    /// own order is walked without keeping a thing of it.
    void walk(const std::function<void(std::int64_t)> &visit);

    /// See FileReader.
    void before_write();
    void before_change(const QString &table);

    /// How many rows' contents were read since this was made.
    std::int64_t rows_read() const { return cursor_.rows_read(); }

private:
    std::shared_ptr<DatabaseFile> file_;
    std::shared_ptr<ReadConnection> reader_;
    QueryPlan plan_;
    RowKeys keys_;
    RowCursor cursor_;
    PreparedStatement count_statement_;
    std::int64_t last_row_number_ = 0;
    std::optional<std::int64_t> count_;
    bool sorted_ = false;
    std::unordered_map<std::int64_t, QStringList> cells_; // by row number
};
