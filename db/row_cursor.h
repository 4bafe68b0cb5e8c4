#pragma once

#include "db/prepared_statement.h"
#include "db/query_plan.h"

#include <cstdint>
#include <optional>

/// Reads rows by their numbers; rows that follow each other are stepped to, others looked up.
class RowCursor
{
public:
    RowCursor(sqlite3 *reader, const QueryPlan &plan);

    /// Makes a row current. @return false when there is none with this number.
    bool seek(std::int64_t row_number) { return seek_from(row_number) == row_number; }

    /// Makes the first row with this number or a higher one current.
    /// @return its number, none when there is no such row.
    std::optional<std::int64_t> seek_from(std::int64_t row_number);

    /// The current row's field, valid until the next seek() or release(); empty for a NULL.
    std::string_view text(int column) const { return statement_.text(column + 1); }

    /// Holds no state of the database, and no current row, any more.
    void release();

    std::int64_t rows_read() const { return statement_.rows_read(); }

private:
    void step();

    PreparedStatement statement_;
    std::optional<std::int64_t> current_;
};
