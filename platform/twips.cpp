#include "platform/twips.h"

#include <QHeaderView>
#include <QTableView>
#include <QVariant>

#include <algorithm>

namespace
{
constexpr const char *kept_widths = "column_widths_in_twips";

/// Gives the columns from `first` on the widths that the header keeps.
void apply_widths(QHeaderView &header, int first)
{
    const auto twips = header.property(kept_widths).value<QList<int>>();
    const int columns = std::min(static_cast<int>(twips.size()), header.count());
    for (int column = first; column < columns; ++column)
        header.resizeSection(column, twips_to_pixels(twips[column]));
}
} // namespace

int twips_to_pixels(int twips)
{
    return (twips * 96 + 720) / 1440;
}

void set_column_widths(QTableView &grid, const QList<int> &twips)
{
    QHeaderView *header = grid.horizontalHeader();
    const bool watched = header->property(kept_widths).isValid();
    header->setProperty(kept_widths, QVariant::fromValue(twips));
    apply_widths(*header, 0);
    if (!watched)
        QObject::connect(header, &QHeaderView::sectionCountChanged, header,
                         [header](int old_count, int) { apply_widths(*header, old_count); });
}
