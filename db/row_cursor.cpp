#include "db/row_cursor.h"

namespace
{
// So many rows are stepped over sooner than a row is looked up.
constexpr std::int64_t near_rows = 8;
} // namespace

RowCursor::RowCursor(sqlite3 *reader, const QueryPlan &plan)
    : statement_(reader, row_query(plan), plan.shown)
{
}

std::optional<std::int64_t> RowCursor::seek_from(std::int64_t row_number)
{
    const bool near = current_ && *current_ <= row_number && row_number - *current_ <= near_rows;
    if (!near) {
        release();
        statement_.bind(1, row_number);
        step();
    }
    while (current_ && *current_ < row_number)
        step();
    return current_;
}

void RowCursor::step()
{
    if (statement_.step())
        current_ = statement_.integer(0);
    else
        current_.reset();
}

void RowCursor::release()
{
    statement_.reset();
    current_.reset();
}
