#include "db/row_keys.h"

#include "db/text_set.h"

#include <limits>

RowKeys::RowKeys(sqlite3 *reader, const QueryPlan &plan)
    : statement_(reader, key_query(plan).sql, plan.shown),
      query_(key_query(plan)),
      columns_(static_cast<int>(plan.columns.size())),
      distinct_(plan.select.distinct),
      resumable_(plan.select.order.empty() && !distinct_)
{
    int parameter = 0;
    for (const QString &literal : plan.select.where.literals)
        statement_.bind(++parameter, literal);
}

void RowKeys::restart(std::int64_t last_row_number)
{
    release();
    keys_.clear();
    last_row_number_ = last_row_number;
    complete_ = false;
}

void RowKeys::release()
{
    statement_.reset();
    reading_ = false;
}

const std::vector<std::int64_t> &RowKeys::all()
{
    read_up_to(std::numeric_limits<std::int64_t>::max());
    return keys_;
}

bool RowKeys::read_up_to(std::int64_t position)
{
    // Some more than asked for: reading on is cheaper than being asked again.
    constexpr std::int64_t ahead = 256;
    const auto read = [this] { return static_cast<std::int64_t>(keys_.size()); };
    complete_ = complete_ || (resumable_ && !keys_.empty() && keys_.back() == last_row_number_);
    if (complete_)
        return position < read();
    if (!reading_)
        start_reading();
    if (distinct_)
        read_distinct();
    while (!complete_ && (!resumable_ || position >= read() - ahead)) {
        complete_ = !statement_.step();
        if (!complete_)
            keys_.push_back(statement_.integer(0));
    }
    reading_ = reading_ && !complete_;
    return position < read();
}

void RowKeys::start_reading()
{
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    // Key by key upwards: the last one read was below the last one of all, as there is more.
    const bool from_start = keys_.empty() || !resumable_;
    statement_.bind(query_.keys_from, from_start ? lowest : keys_.back() + 1);
    statement_.bind(query_.keys_up_to, last_row_number_);
    reading_ = true;
}

// A row stands for all rows whose texts are the same but for letter case: the first of them.
void RowKeys::read_distinct()
{
    TextSet seen;
    while (statement_.step()) {
        for (int column = 1; column <= columns_; ++column)
            seen.add_field(statement_.text(column), statement_.is_null(column));
        if (seen.insert())
            keys_.push_back(statement_.integer(0));
    }
    complete_ = true;
}
