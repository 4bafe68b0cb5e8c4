#pragma once

#include <QString>
#include <QStringList>
#include <Qt>

/// The rows of a record source as they were at its connection's refresh, and a current record.
/// Positions and columns count from 0. Column names are matched without regard to letter case.
class RecordSet
{
public:
    QStringList columns() const;

    /// The full count of rows.
    qint64 record_count();

    void move_first();
    /// @throws RuntimeError 3021 when the end has been passed already.
    void move_next();
    /// @throws RuntimeError 3021 when there is no such row; the current record then stays.
    void move_to(qint64 position);
    bool eof();
    qint64 absolute_position() const;
    /// 0 to 100.
    int percent_position();

    /// The current record's field; empty text for a NULL.
    /// @throws RuntimeError 3021 without a current record, 3265 for a column that is not there.
    QString field(const QString &column);

    /// Assigns a field of the record being added or edited. @throws RuntimeError 3265, 3020.
    void set_field(const QString &column, const QString &value);

    /// @throws RuntimeError 3027 when the set joins, groups or is distinct.
    void add_new();
    void edit();
    /// Stores the record being added or edited; it is in the file when this returns.
    void update();
    void delete_current();

    /// For grids: a cell without moving the current record, cut to `limit` characters.
    QString cell(qint64 row, int column, qsizetype limit);

    /// Sorts the rows by a column in memory: numbers by value before text, text without regard to
    /// letter case; rows that are equal keep their order. The database is not touched.
    void sort(int column, Qt::SortOrder order);
};
