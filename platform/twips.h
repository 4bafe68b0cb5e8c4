#pragma once

#include <QList>

class QTableView;

/// Twips (1/1440 inch) as logical pixels, of which an inch has 96.
int twips_to_pixels(int twips);

/// Sets the widths of a grid's columns 0, 1, … in twips; columns that the grid does not have are
/// passed over.
void set_column_widths(QTableView &grid, const QList<int> &twips);
