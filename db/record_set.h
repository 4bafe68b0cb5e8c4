#pragma once

#include <QString>
#include <QStringList>
#include <Qt>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>

class OpenQuery;

/// The rows of a record source as they were at its connection's refresh, and a current record.
/// Positions and columns count from 0. Column names are matched without regard to letter case.
///
/// A record that is added, changed or deleted is in the file at once, and in the set from the next
/// refresh on.
class RecordSet
{
public:
    /// `moved` is called when another record has become current, or none; `reordered` when sort()
    /// has put the rows in a new order.
    RecordSet(std::function<void()> moved, std::function<void()> reordered);
    ~RecordSet();
    RecordSet(const RecordSet &) = delete;
    RecordSet &operator=(const RecordSet &) = delete;

    /// For the connection: shows another query's rows, or none.
    void show(std::unique_ptr<OpenQuery> query);
    /// For the connection: the rows are those of now, the first one is current.
    void restart();
    OpenQuery *query() const { return query_.get(); }

    QStringList columns() const;

    /// The full count of rows. Quick for a whole table; with a condition every row is looked at
    /// once.
    qint64 record_count();

    void move_first();
    /// @throws RuntimeError 3021 when the end has been passed already.
    void move_next();
    /// @throws RuntimeError 3021 when there is no such row; the current record then stays.
    void move_to(qint64 position);
    bool eof();
    /// -1 without a current record.
    qint64 absolute_position();
    /// How far the current record is from the first one: 0 to 100, 100 when the end is passed; 0
    /// for an empty set.
    int percent_position();

    /// The current record's field; empty text for a NULL.
    /// @throws RuntimeError 3021 without a current record, 3265 for a column that is not there,
    /// 3167 when the set itself has deleted the record.
    QString field(const QString &column);

    /// Assigns a field of the record being added or edited. @throws RuntimeError 3265, 3020.
    void set_field(const QString &column, const QString &value);

    /// Adding and editing end with update(); moving to another record gives them up.
    /// @throws RuntimeError 3027 when the set is distinct or the file cannot be written; edit() and
    /// delete_current() also 3021 without a current record, 3167 when it has been deleted.
    void add_new();
    void edit();
    /// Stores the record being added or edited, the assigned fields only; it is in the file when
    /// this returns. @throws RuntimeError 3020 without add_new() or edit(); 3167; 3027.
    void update();
    void delete_current();

    /// Visits every record from the first to the last, in the set's order, with the fields of these
    /// columns (empty text for a NULL). The current record stays. Memory does not grow with the
    /// table when the set is a whole table in its own order.
    /// @throws RuntimeError 3265 for a column that is not there; nothing is visited then.
    void walk(const QStringList &columns,
              const std::function<void(const QStringList &fields)> &visit);

    /// For grids: a cell without moving the current record, cut to `limit` characters (at most
    /// 2,000); empty for a row or column that is not there.
    QString cell(qint64 row, int column, qsizetype limit);

    /// Sorts the rows by a column in memory: numbers by value before text, text without regard to
    /// letter case; rows that are equal keep their order. The first row becomes the current record.
    /// The database is not touched.
    /// @throws RuntimeError 3265 for a column that is not there.
    void sort(int column, Qt::SortOrder order);

private:
    enum class Mode { Browsing, Adding, Editing };

    OpenQuery &open_query() const;
    int column_index(const QString &column) const;
    std::int64_t current_row();
    void go_to(qint64 position);
    void require_updatable() const;
    void start(Mode mode);
    void insert_assigned();
    void update_assigned();

    std::function<void()> moved_;
    std::function<void()> reordered_;
    std::unique_ptr<OpenQuery> query_;
    qint64 position_ = 0;
    Mode mode_ = Mode::Browsing;
    std::map<int, QString> assigned_; // by column
    std::set<std::int64_t> deleted_;  // rows that this set has deleted since its refresh
};
