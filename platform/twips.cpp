#include "platform/twips.h"

#include <QHeaderView>
#include <QTableView>

#include <algorithm>

int twips_to_pixels(int twips)
{
    return (twips * 96 + 720) / 1440;
}

void set_column_widths(QTableView &grid, const QList<int> &twips)
{
    const int columns = std::min(static_cast<int>(twips.size()), grid.horizontalHeader()->count());
    for (int column = 0; column < columns; ++column)
        grid.setColumnWidth(column, twips_to_pixels(twips[column]));
}
