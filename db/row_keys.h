#pragma once

#include "db/prepared_statement.h"
#include "db/query_plan.h"

#include <cstdint>
#include <vector>

/// The row numbers of a query's rows, 8 bytes a row, read as far as somebody asks.
class RowKeys
{
public:
    /// @throws RuntimeError as PreparedStatement for a statement that SQLite refuses.
    RowKeys(sqlite3 *reader, const QueryPlan &plan);

    /// Forgets all; from now on rows with numbers up to `last_row_number` count.
    void restart(std::int64_t last_row_number);

    /// Whether there is a row at this position; reads up to it.
    bool has(std::int64_t position)
    {
        return position < static_cast<std::int64_t>(keys_.size()) || read_up_to(position);
    }
    /// The row number at a position that there is.
    std::int64_t at(std::int64_t position) const
    {
        return keys_[static_cast<std::size_t>(position)];
    }

    /// All row numbers.
    const std::vector<std::int64_t> &all();
    /// The same row numbers in a new order.
    void replace(std::vector<std::int64_t> keys) { keys_ = std::move(keys); }

    /// Holds no state of the database; reading goes on behind the last row read.
    void release();

private:
    bool read_up_to(std::int64_t position);
    void start_reading();
    void read_distinct();

    PreparedStatement statement_;
    KeyQuery query_;
    int columns_;
    bool distinct_;
    bool resumable_; // whether rows come in the order of their numbers
    bool complete_ = true;
    bool reading_ = false;
    std::int64_t last_row_number_ = 0;
    std::vector<std::int64_t> keys_;
};
