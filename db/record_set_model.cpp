#include "db/record_set_model.h"

#include "db/data_connection.h"
#include "platform/runtime_error.h"
#include "platform/shown_text.h"

#include <QHeaderView>
#include <QTableView>

#include <algorithm>
#include <limits>

namespace
{
constexpr qsizetype cell_characters = 300;
constexpr qsizetype tool_tip_characters = 2000;
} // namespace

RecordSetModel::RecordSetModel(DataConnection &connection, QObject *parent)
    : QAbstractTableModel(parent),
      connection_(connection)
{
    connect(&connection, &DataConnection::rows_changed, this, &RecordSetModel::follow_later);
    read_shape();
}

void RecordSetModel::follow_later()
{
    if (follows_later_)
        return;
    follows_later_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (follows_later_)
                flush();
        },
        Qt::QueuedConnection);
}

void RecordSetModel::flush()
{
    follows_later_ = false;
    painted_.clear();
    beginResetModel();
    read_shape();
    endResetModel();
}

void RecordSetModel::paint_now(QTableView &grid)
{
    if (!follows_later_ || !grid.isVisible())
        return;
    const QStringList painted = painted_;
    flush();
    painted_ = screen(grid);
    // Rows that are added below are the common case, and painting is dear.
    if (painted_ != painted)
        grid.viewport()->repaint();
}

QStringList RecordSetModel::screen(const QTableView &grid) const
{
    const int bottom = grid.rowAt(grid.viewport()->height() - 1); // -1: there is room below
    const int end = bottom < 0 ? rows_ : bottom + 1;
    QStringList cells;
    for (int row = std::max(grid.rowAt(0), 0); row < end; ++row) {
        for (int column = 0; column < columnCount(); ++column)
            cells.append(cell(index(row, column), cell_characters));
    }
    return cells;
}

// A file that fails now fails again in the command that reads it, which can say so.
void RecordSetModel::read_shape()
{
    rows_ = 0;
    columns_.clear();
    if (!connection_.has_record_set())
        return;
    attempt([this] {
        RecordSet &set = connection_.record_set();
        columns_ = set.columns();
        rows_ =
            static_cast<int>(std::min<qint64>(set.record_count(), std::numeric_limits<int>::max()));
    });
}

int RecordSetModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int RecordSetModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QString RecordSetModel::cell(const QModelIndex &index, qsizetype limit) const
{
    QString text;
    if (connection_.has_record_set())
        attempt([&] { text = connection_.record_set().cell(index.row(), index.column(), limit); });
    return text;
}

QVariant RecordSetModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole)
        return one_line(cell(index, cell_characters));
    if (role == Qt::ToolTipRole)
        return plain_tool_tip(cell(index, tool_tip_characters));
    return {};
}

QVariant RecordSetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    return columns_.value(section);
}

void RecordSetModel::sort(int column, Qt::SortOrder order)
{
    connection_.record_set().sort(column, order);
    flush();
}

void set_up_grid(QTableView &grid, RecordSetModel &model)
{
    constexpr int row_padding = 6; // pixels
    grid.setModel(&model);
    grid.setSelectionBehavior(QAbstractItemView::SelectRows);
    grid.setSelectionMode(QAbstractItemView::SingleSelection);
    grid.setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid.setAlternatingRowColors(true);
    grid.setWordWrap(false);
    grid.setSortingEnabled(false);
    grid.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    grid.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    grid.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    grid.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid.verticalHeader()->setDefaultSectionSize(grid.fontMetrics().height() + row_padding);
    grid.verticalHeader()->hide();
}
