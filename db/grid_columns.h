#pragma once

#include <QList>

/// The widths of the master list's columns, in twips.
inline QList<int> master_list_widths()
{
    return {2500, 3000};
}

/// The widths of the work table's columns, in twips.
inline QList<int> work_table_widths()
{
    return {2500, 3000, 3500, 5000, 2500};
}
