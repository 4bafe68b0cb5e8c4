#include "db/record_set.h"

#include "db/database_file.h"
#include "db/open_query.h"
#include "platform/runtime_error.h"

#include <utility>
#include <vector>

namespace
{
RuntimeError no_current_record()
{
    return {error_number::no_current_record, QStringLiteral("No current record.")};
}

RuntimeError record_deleted()
{
    return {error_number::record_deleted, QStringLiteral("Record is deleted.")};
}

/// "first, second, …", each column as `written` gives it.
template <typename Written>
std::string joined(const std::map<int, QString> &assigned, Written written)
{
    std::string list;
    for (const auto &[column, value] : assigned)
        list += (list.empty() ? "" : ", ") + written(column);
    return list;
}

int bind_values(PreparedStatement &statement, const std::map<int, QString> &assigned)
{
    int parameter = 0;
    for (const auto &[column, value] : assigned)
        statement.bind(++parameter, value);
    return parameter;
}
} // namespace

RecordSet::RecordSet(std::function<void()> moved, std::function<void()> reordered)
    : moved_(std::move(moved)),
      reordered_(std::move(reordered))
{
}

RecordSet::~RecordSet() = default;

void RecordSet::show(std::unique_ptr<OpenQuery> query)
{
    query_ = std::move(query);
    moved_();
}

void RecordSet::restart()
{
    open_query().restart();
    deleted_.clear();
    go_to(0);
}

OpenQuery &RecordSet::open_query() const
{
    if (query_ == nullptr)
        throw RuntimeError(error_number::object_not_set,
                           QStringLiteral("Object variable not set: no record set is open."));
    return *query_;
}

QStringList RecordSet::columns() const
{
    return open_query().plan().columns;
}

qint64 RecordSet::record_count()
{
    return open_query().count();
}

void RecordSet::go_to(qint64 position)
{
    position_ = position;
    mode_ = Mode::Browsing;
    assigned_.clear();
    moved_();
}

void RecordSet::move_first()
{
    open_query();
    go_to(0);
}

void RecordSet::move_next()
{
    if (eof())
        throw no_current_record();
    go_to(position_ + 1);
}

void RecordSet::move_to(qint64 position)
{
    if (position < 0 || !open_query().has(position))
        throw no_current_record();
    go_to(position);
}

bool RecordSet::eof()
{
    return !open_query().has(position_);
}

qint64 RecordSet::absolute_position()
{
    return eof() ? -1 : position_;
}

int RecordSet::percent_position()
{
    const qint64 count = record_count();
    return count == 0 ? 0 : static_cast<int>(position_ * 100 / count);
}

int RecordSet::column_index(const QString &column) const
{
    const QStringList &names = open_query().plan().columns;
    for (int i = 0; i < names.size(); ++i) {
        if (names[i].compare(column, Qt::CaseInsensitive) == 0)
            return i;
    }
    throw RuntimeError(error_number::item_not_found,
                       QStringLiteral("Item not found in this collection: '%1'").arg(column));
}

std::int64_t RecordSet::current_row()
{
    if (eof())
        throw no_current_record();
    const std::int64_t row = query_->row_number(position_);
    if (deleted_.contains(row))
        throw record_deleted();
    return row;
}

QString RecordSet::field(const QString &column)
{
    const int index = column_index(column);
    return to_qstring(query_->text(current_row(), index));
}

void RecordSet::set_field(const QString &column, const QString &value)
{
    const int index = column_index(column);
    if (mode_ == Mode::Browsing)
        throw RuntimeError(
            error_number::update_without_edit,
            QStringLiteral("Update or CancelUpdate without AddNew or Edit: '%1'").arg(column));
    assigned_[index] = value;
}

void RecordSet::require_updatable() const
{
    if (!open_query().plan().can_update())
        throw RuntimeError(error_number::cannot_update,
                           QStringLiteral("Cannot update. Database or object is read-only: '%1'")
                               .arg(query_->plan().shown));
    query_->file().require_writable();
}

void RecordSet::start(Mode mode)
{
    assigned_.clear();
    mode_ = mode;
}

void RecordSet::add_new()
{
    require_updatable();
    start(Mode::Adding);
}

void RecordSet::edit()
{
    require_updatable();
    current_row();
    start(Mode::Editing);
}

void RecordSet::update()
{
    open_query();
    if (mode_ == Mode::Browsing)
        throw RuntimeError(error_number::update_without_edit,
                           QStringLiteral("Update or CancelUpdate without AddNew or Edit."));
    if (mode_ == Mode::Adding)
        insert_assigned();
    else if (!assigned_.empty())
        update_assigned();
    start(Mode::Browsing);
}

void RecordSet::insert_assigned()
{
    const QueryPlan &plan = query_->plan();
    std::string sql = "insert into " + quoted_name(plan.table.name) + " default values";
    if (!assigned_.empty()) {
        const auto name = [&plan](int column) { return quoted_name(plan.columns[column]); };
        sql = "insert into " + quoted_name(plan.table.name) + "(" + joined(assigned_, name) +
              ") values (" + joined(assigned_, [](int) { return std::string("?"); }) + ")";
    }
    query_->file().write(
        plan.table, Write::Insert, sql,
        [this](PreparedStatement &statement) { bind_values(statement, assigned_); }, plan.shown);
}

void RecordSet::update_assigned()
{
    const QueryPlan &plan = query_->plan();
    const std::int64_t row = current_row();
    const auto assignment = [&plan](int column) {
        return quoted_name(plan.columns[column]) + " = ?";
    };
    const std::string sql = "update " + quoted_name(plan.table.name) + " set " +
                            joined(assigned_, assignment) + " where " + plan.table.row_number +
                            " = ?";
    const auto bind = [this, row](PreparedStatement &statement) {
        statement.bind(bind_values(statement, assigned_) + 1, row);
    };
    if (query_->file().write(plan.table, Write::Update, sql, bind, plan.shown) == 0)
        throw record_deleted();
}

void RecordSet::delete_current()
{
    require_updatable();
    const QueryPlan &plan = query_->plan();
    const std::int64_t row = current_row();
    const std::string sql =
        "delete from " + quoted_name(plan.table.name) + " where " + plan.table.row_number + " = ?";
    const auto bind = [row](PreparedStatement &statement) { statement.bind(1, row); };
    if (query_->file().write(plan.table, Write::Delete, sql, bind, plan.shown) == 0)
        throw record_deleted();
    deleted_.insert(row);
    start(Mode::Browsing);
    moved_();
}

void RecordSet::walk(const QStringList &columns,
                     const std::function<void(const QStringList &fields)> &visit)
{
    std::vector<int> indexes;
    for (const QString &column : columns)
        indexes.push_back(column_index(column));
    open_query().walk([&](std::int64_t row) {
        QStringList fields;
        for (const int index : indexes)
            fields.append(to_qstring(query_->text(row, index)));
        visit(fields);
    });
}

QString RecordSet::cell(qint64 row, int column, qsizetype limit)
{
    const bool there =
        row >= 0 && column >= 0 && open_query().has(row) && column < query_->plan().columns.size();
    if (!there)
        return {};
    return cut_text(query_->cells(row)[column], limit);
}

void RecordSet::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= open_query().plan().columns.size())
        throw RuntimeError(error_number::item_not_found,
                           QStringLiteral("Item not found in this collection: %1").arg(column));
    query_->sort(column, order);
    go_to(0);
    reordered_();
}
