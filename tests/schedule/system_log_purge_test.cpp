// The form routine that empties the work table by the clock.
#include "tests/schedule/schedule_room.h"

#include <gtest/gtest.h>

namespace
{
class SystemLogPurge : public ScheduleRoom
{
protected:
    SystemLogPurge()
    {
        add_system("ann@example.org", "Hello");
        set_now("2026-03-02 11:00:00");
        write_file("c:\\Ostrix\\log.log", "before\r\n");
    }

    const QDateTime reference{QDate(2026, 3, 2), QTime(9, 30)};
};

TEST_F(SystemLogPurge, EmptiesTheTableAndSaysSoInTheLog)
{
    window().purgeSystemLog("2", reference);
    EXPECT_EQ(rows("system"), QStringList());
    EXPECT_EQ(grid("MSFlexGrid1"), QStringList());
    EXPECT_EQ(content("c:\\Ostrix\\log.log"),
              "before\r\n2026-03-02 11:00:00System Log Deleted According To Schedule\r\n");
    EXPECT_EQ(content("c:\\Ostrix\\system.log"), "(none)");
    EXPECT_EQ(boxes.shown(), QStringList());
}

TEST_F(SystemLogPurge, DoesNothingWithoutAPeriod)
{
    window().purgeSystemLog("", reference);
    EXPECT_EQ(rows("system").size(), 1);
}

TEST_F(SystemLogPurge, DoesNothingUnlessTheCountEqualsThePeriod)
{
    for (const char *period : {"0", "1", "3"})
        window().purgeSystemLog(period, reference);
    EXPECT_EQ(rows("system").size(), 1);
    EXPECT_EQ(content("c:\\Ostrix\\log.log"), "before\r\n");
}

TEST_F(SystemLogPurge, APeriodThatIsNoNumberIsATypeMismatch)
{
    EXPECT_THROW(window().purgeSystemLog("often", reference), RuntimeError);
}
} // namespace
