#include "app/status_progress.h"

#include <QLabel>
#include <QStatusBar>
#include <gtest/gtest.h>

namespace
{
class Progress : public testing::Test
{
protected:
    qint64 now = 0;
    int grid_paintings = 0;
    QStatusBar bar;
    StatusProgress progress{bar, [this] { ++grid_paintings; }, [this] { return now; }};

    QString shown() const { return bar.findChild<QLabel *>()->text(); }
};

TEST_F(Progress, IsShownAtOnceAndThenEveryFiftyMilliseconds)
{
    progress.tell("Row", 1, 1234567);
    EXPECT_EQ(shown(), "Row 1 of 1,234,567");
    now = 49;
    progress.tell("Row", 2, 1234567);
    EXPECT_EQ(shown(), "Row 1 of 1,234,567");
    now = 50;
    progress.tell("Row", 3000, 1234567);
    EXPECT_EQ(shown(), "Row 3,000 of 1,234,567");
}

TEST_F(Progress, PaintsTheGridsAtOnceAndThenEveryHundredAndFiftyMilliseconds)
{
    progress.tell("Row", 1, 9);
    EXPECT_EQ(grid_paintings, 1);
    now = 149;
    progress.tell("Row", 2, 9);
    EXPECT_EQ(grid_paintings, 1);
    now = 200;
    progress.tell("Row", 3, 9);
    EXPECT_EQ(grid_paintings, 2);
    progress.clear();
    progress.tell("Line", 1, 9);
    EXPECT_EQ(grid_paintings, 3);
}

TEST_F(Progress, IsEmptyAfterTheEndAndShownAtOnceTheNextTime)
{
    progress.tell("Row", 1, 2);
    progress.clear();
    EXPECT_EQ(shown(), "");
    progress.tell("Line", 1, 2);
    EXPECT_EQ(shown(), "Line 1 of 2");
}
} // namespace
