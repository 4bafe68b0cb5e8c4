#include "platform/skipped_steps.h"
#include "schedule/schedule_state.h"

#include <gtest/gtest.h>

namespace
{
TEST(ScheduleState, TellsNextAndLastRun)
{
    const QDateTime next(QDate(2026, 3, 2), QTime(11, 0));
    EXPECT_EQ(state_until(next, {}), "Schedule: next run at 2026-03-02 11:00");
    EXPECT_EQ(state_until(next, "2026-03-02 09:00:10"),
              "Schedule: next run at 2026-03-02 11:00, last run at 2026-03-02 09:00:10");
    EXPECT_EQ(state_until({}, {}), "Schedule: no run will come; start it again");
    EXPECT_EQ(state_while_running("2026-03-02 09:00:10"),
              "Schedule: the run of 2026-03-02 09:00:10 is going on");
}

TEST(SkippedNote, CountsAndLists)
{
    SkippedSteps one;
    one.add("The store says no");
    EXPECT_EQ(skipped_note("then", one),
              "The run of then passed over one step:\nThe store says no");
    one.add("The store says no");
    one.add("Disk full");
    EXPECT_EQ(skipped_note("then", one),
              "The run of then passed over 3 steps:\nThe store says no (2 times)\nDisk full");
}
} // namespace
