#pragma once

#include <QList>

class QTableView;

/// Twips (1/1440 inch) as logical pixels, of which an inch has 96.
int twips_to_pixels(int twips);

/// Sets the widths of a grid's columns 0, 1, … in twips. The grid keeps them by position: a column
/// that comes later, or goes and comes back, gets its width then.
void set_column_widths(QTableView &grid, const QList<int> &twips);
