#include "platform/twips.h"

#include <QHeaderView>
#include <QStandardItemModel>
#include <QTableView>
#include <gtest/gtest.h>

namespace
{
class ColumnWidths : public testing::Test
{
protected:
    QTableView grid;
    QStandardItemModel model;

    ColumnWidths() { grid.setModel(&model); }
};

TEST(Twips, AreAFifteenthOfAPixelEachRounded)
{
    EXPECT_EQ(twips_to_pixels(1440), 96);
    EXPECT_EQ(twips_to_pixels(2500), 167);
    EXPECT_EQ(twips_to_pixels(3000), 200);
    EXPECT_EQ(twips_to_pixels(0), 0);
}

TEST_F(ColumnWidths, ApplyToColumnsThatComeLater)
{
    set_column_widths(grid, {1500, 3000});
    model.setColumnCount(3);
    EXPECT_EQ(grid.columnWidth(0), 100);
    EXPECT_EQ(grid.columnWidth(1), 200);
    EXPECT_EQ(grid.columnWidth(2), grid.horizontalHeader()->defaultSectionSize());
}

TEST_F(ColumnWidths, ComeBackWithTheirColumn)
{
    model.setColumnCount(2);
    set_column_widths(grid, {1500, 3000});
    model.setColumnCount(1);
    model.setColumnCount(2);
    EXPECT_EQ(grid.columnWidth(1), 200);
}

TEST_F(ColumnWidths, AWidthThatAPersonDraggedStaysWhenOtherColumnsComeAndGo)
{
    model.setColumnCount(2);
    set_column_widths(grid, {1500, 3000});
    grid.setColumnWidth(0, 321);
    model.setColumnCount(1);
    model.setColumnCount(2);
    EXPECT_EQ(grid.columnWidth(0), 321);
}

TEST_F(ColumnWidths, CanBeSetAnew)
{
    model.setColumnCount(1);
    set_column_widths(grid, {1500});
    set_column_widths(grid, {3000});
    EXPECT_EQ(grid.columnWidth(0), 200);
}
} // namespace
