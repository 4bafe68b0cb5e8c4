#pragma once

#include <QAbstractTableModel>

class DataConnection;
class QTableView;

/// A connection's record set as rows and columns for a grid. Rows are read when the grid shows
/// them.
///
/// When the connection's rows change, the grid follows at the next turn of the event loop, however
/// often they changed until then, or when flush() is called.
class RecordSetModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// `connection` must outlive the model.
    explicit RecordSetModel(DataConnection &connection, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;

    /// A cell is one line of at most 300 characters, its tool tip plain text of at most 2,000. Line
    /// breaks, control characters and marks that turn the direction of writing are shown as blanks.
    /// A field that cannot be read is empty.
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Sorts the record set (RecordSet::sort()); the grid follows at once.
    void sort(int column, Qt::SortOrder order) override;

    /// Lets the grid follow now.
    void flush();

    /// Lets `grid`, which shows this model, follow and paints it, without a turn of the event loop.
    /// Does nothing when no rows have changed or nobody can see the grid, and does not paint the
    /// same rows again.
    void paint_now(QTableView &grid);

private:
    void follow_later();
    void read_shape();
    QString cell(const QModelIndex &index, qsizetype limit) const;
    QStringList screen(const QTableView &grid) const;

    DataConnection &connection_;
    QStringList columns_;
    int rows_ = 0;
    bool follows_later_ = false;
    QStringList painted_; // the cells that paint_now() has painted since the last turn of the loop
};

/// Sets a grid up for a record set: whole single rows are selected, rows have one fixed height,
/// text does not wrap, scrolling is by pixels, and a click on the header does not sort.
void set_up_grid(QTableView &grid, RecordSetModel &model);
