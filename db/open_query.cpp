#include "db/open_query.h"

#include "db/database_file.h"
#include "db/row_sort.h"

#include <limits>

namespace
{
constexpr std::size_t max_cached_rows = 512; // some screens full

std::string count_query(const QueryPlan &plan)
{
    const std::string table = quoted_name(plan.table.name);
    return "select (select count(*) from " + table + ") - (select count(*) from " + table +
           " where " + plan.table.row_number + " > ?1)";
}

QString cut_cell(std::string_view utf8)
{
    // No character takes more than four bytes: what lies behind need not be decoded.
    constexpr auto bytes = static_cast<std::size_t>(OpenQuery::widest_cell) * 4;
    return cut_text(to_qstring(utf8.substr(0, bytes)), OpenQuery::widest_cell);
}
} // namespace

QString cut_text(QString text, qsizetype limit)
{
    if (text.size() > limit)
        text.truncate(limit > 0 && text[limit - 1].isHighSurrogate() ? limit - 1 : limit);
    return text;
}

OpenQuery::OpenQuery(std::shared_ptr<DatabaseFile> file, std::shared_ptr<ReadConnection> reader,
                     const Statement &source)
    : file_(std::move(file)),
      reader_(std::move(reader)),
      plan_(plan_query(*file_, source)),
      keys_(reader_->handle(), plan_),
      cursor_(reader_->handle(), plan_),
      count_statement_(reader_->handle(), count_query(plan_), plan_.shown)
{
}

void OpenQuery::restart()
{
    before_write();
    reader_->unpin();
    cells_.clear();
    last_row_number_ = file_->last_row_number(plan_.table);
    keys_.restart(last_row_number_);
    count_.reset();
    sorted_ = false;
    if (plan_.is_whole_table())
        count_ = file_->known_row_count(plan_.table);
}

std::int64_t OpenQuery::count()
{
    if (count_)
        return *count_;
    if (!plan_.is_whole_table()) {
        count_ = static_cast<std::int64_t>(keys_.all().size());
        return *count_;
    }
    count_statement_.bind(1, last_row_number_);
    count_statement_.step();
    count_ = count_statement_.integer(0);
    count_statement_.reset();
    if (!reader_->is_pinned() && file_->last_row_number(plan_.table) == last_row_number_)
        file_->learn_row_count(plan_.table, *count_);
    return *count_;
}

std::string_view OpenQuery::text(std::int64_t row_number, int column)
{
    // A row that another program has deleted meanwhile is empty.
    return cursor_.seek(row_number) ? cursor_.text(column) : std::string_view();
}

const QStringList &OpenQuery::cells(std::int64_t position)
{
    const std::int64_t row = keys_.at(position);
    const auto known = cells_.find(row);
    if (known != cells_.end())
        return known->second;
    if (cells_.size() >= max_cached_rows)
        cells_.clear();
    QStringList fields;
    for (int column = 0; column < plan_.columns.size(); ++column)
        fields.append(cut_cell(text(row, column)));
    return cells_.emplace(row, fields).first->second;
}

void OpenQuery::sort(int column, Qt::SortOrder order)
{
    keys_.replace(sorted_rows(
        keys_.all(), [this, column](std::int64_t row) { return text(row, column); }, order));
    sorted_ = true;
}

void OpenQuery::walk(const std::function<void(std::int64_t)> &visit)
{
    if (!plan_.is_whole_table() || !plan_.select.order.empty() || sorted_) {
        for (std::int64_t position = 0; keys_.has(position); ++position)
            visit(keys_.at(position));
        return;
    }
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    auto row = cursor_.seek_from(lowest);
    while (row && *row <= last_row_number_) {
        visit(*row);
        row = *row < last_row_number_ ? cursor_.seek_from(*row + 1) : std::nullopt;
    }
    cursor_.release();
}

void OpenQuery::before_write()
{
    keys_.release();
    cursor_.release();
}

void OpenQuery::before_change(const QString &table)
{
    if (table == plan_.table.name)
        reader_->pin();
}
