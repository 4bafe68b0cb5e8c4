// The page "Schedule": what its controls do while no run is due.
#include "tests/schedule/schedule_room.h"

#include <QSpinBox>
#include <QStyle>
#include <QStyleOptionSpinBox>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using ScheduleTab = ScheduleRoom;

TEST_F(ScheduleTab, IsStoppedWhenTheWindowOpens)
{
    EXPECT_EQ(timer().interval(), 60000);
    EXPECT_FALSE(is_scheduled());
    EXPECT_EQ(text("Text18"), "0");
    EXPECT_EQ(text("Text19"), "0");
    EXPECT_EQ(state(), "");
}

TEST_F(ScheduleTab, StartWantsADay)
{
    type("Text18", "2");
    boxes.expect_notice("Please indicate which days you would like to run the program!");
    click("Command15");
    EXPECT_FALSE(is_scheduled());
    EXPECT_EQ(text("Text20"), "");
}

TEST_F(ScheduleTab, StartWantsAnInterval)
{
    click("Check1");
    boxes.expect_notice("Please enter the interval between program runs");
    click("Command15");
    EXPECT_FALSE(is_scheduled());
}

TEST_F(ScheduleTab, ARefusedStartLeavesTheTimerAsItWas)
{
    click("Check1");
    type("Text18", "2");
    click("Command15");
    click("Check1");
    boxes.expect_notice("Please indicate which days you would like to run the program!");
    click("Command15");
    EXPECT_TRUE(is_scheduled());
}

TEST_F(ScheduleTab, StartStampsThePeriodAndRunsTheTimerWithoutAMessage)
{
    set_now("2026-03-02 09:30:00");
    click("Check1");
    type("Text18", "2");
    click("Command15");
    EXPECT_TRUE(is_scheduled());
    EXPECT_EQ(text("Text20"), "2026-03-02 09:30:00");
    EXPECT_EQ(state(), "Schedule: next run at 2026-03-02 11:00");
    EXPECT_EQ(boxes.shown(), QStringList());
}

TEST_F(ScheduleTab, StartAgainBeginsANewPeriod)
{
    set_now("2026-03-02 09:30:00");
    click("Check1");
    type("Text19", "5");
    click("Command15");
    set_now("2026-03-02 10:00:00");
    click("Command15");
    EXPECT_EQ(text("Text20"), "2026-03-02 10:00:00");
}

TEST_F(ScheduleTab, StopChangesNothingElse)
{
    click("Check3");
    type("Text19", "5");
    click("Command15");
    const QString start = text("Text20");
    click("Command16");
    EXPECT_FALSE(is_scheduled());
    EXPECT_EQ(text("Text20"), start);
    EXPECT_EQ(text("Text19"), "5");
    EXPECT_EQ(state(), "");
}

TEST_F(ScheduleTab, RefreshStopsAndResets)
{
    click("Check1");
    type("Text19", "5");
    type("Text21", "noon");
    click("Command15");
    control<QListWidget>("List2").addItem("2026-03-02 09:00:00");
    boxes.expect_notice("The schedule has been stopped!", NoticeIcon::Information);
    bool was_reset_before_the_notice = false;
    boxes.before_next_answer([&] {
        was_reset_before_the_notice = text("Text20").isEmpty() && text("Text21").isEmpty() &&
                                      text("Text18") == "0" && text("Text19") == "0" &&
                                      history().isEmpty() && !is_scheduled();
    });
    click("Command17");
    EXPECT_TRUE(was_reset_before_the_notice);
    EXPECT_EQ(days().count(true), 1);
    EXPECT_EQ(state(), "");
}

TEST_F(ScheduleTab, RefreshShowsBothIntervalsAgain)
{
    click("Check1");
    step_up("UpDown1", 2);
    ASSERT_FALSE(control<QWidget>("Text19").isVisible());
    boxes.expect_notice("The schedule has been stopped!", NoticeIcon::Information);
    click("Command17");
    for (const char *name : {"Text18", "UpDown1", "Label17", "Text19", "UpDown2", "Label18"})
        EXPECT_TRUE(control<QWidget>(name).isVisible()) << name;
}

TEST_F(ScheduleTab, EverydayTicksAndUnticksAllDays)
{
    click("Check8");
    EXPECT_EQ(days(), QList<bool>(7, true));
    click("Check3"); // a single day never changes it
    EXPECT_TRUE(control<QCheckBox>("Check8").isChecked());
    EXPECT_EQ(days().count(true), 6);
    click("Check8");
    EXPECT_EQ(days(), QList<bool>(7, false));
}

TEST_F(ScheduleTab, TheUserSeesHoursOrMinutesNeverBoth)
{
    click("Check1"); // brings the tab to the front
    const auto seen = [this](const char *name) { return control<QWidget>(name).isVisible(); };
    step_up("UpDown1", 2);
    EXPECT_EQ(text("Text18"), "2");
    for (const char *name : {"Text19", "UpDown2", "Label18"})
        EXPECT_FALSE(seen(name)) << name;
    step_down("UpDown1", 2);
    for (const char *name : {"Text19", "UpDown2", "Label18"})
        EXPECT_TRUE(seen(name)) << name;
    step_up("UpDown2");
    EXPECT_EQ(text("Text19"), "1");
    for (const char *name : {"Text18", "UpDown1", "Label17"})
        EXPECT_FALSE(seen(name)) << name;
    step_down("UpDown2");
    for (const char *name : {"Text18", "UpDown1", "Label17"})
        EXPECT_TRUE(seen(name)) << name;
}

TEST_F(ScheduleTab, MinutesBackAtZeroShowTheHoursOnlyWhenThoseAreZeroToo)
{
    click("Check1");
    step_up("UpDown2");
    set_text("Text18", "3"); // possible only behind the spinner's back
    step_down("UpDown2");
    EXPECT_FALSE(control<QWidget>("Text18").isVisible());
}

TEST_F(ScheduleTab, TypingHidesNothingAndTheSpinnerGoesOnFromWhatWasTyped)
{
    type("Text18", "7");
    EXPECT_TRUE(control<QWidget>("Text19").isVisible());
    step_up("UpDown1");
    EXPECT_EQ(text("Text18"), "8");
    EXPECT_FALSE(control<QWidget>("Text19").isVisible());
}

TEST_F(ScheduleTab, TheSpinnersKeepToTheirRanges)
{
    click("Check1");
    step_down("UpDown1");
    EXPECT_EQ(text("Text18"), "0");
    type("Text18", "24");
    step_up("UpDown1");
    EXPECT_EQ(text("Text18"), "24");
    type("Text19", "60");
    step_up("UpDown2");
    EXPECT_EQ(text("Text19"), "60");
}

TEST_F(ScheduleTab, TheArrowsCanBeClicked)
{
    click("Check1");
    auto &spinner = control<QSpinBox>("UpDown1");
    QTest::mouseClick(&spinner, Qt::LeftButton, {},
                      QPoint(spinner.width() / 2, spinner.height() / 4));
    EXPECT_EQ(text("Text18"), "1");
    QTest::mouseClick(&spinner, Qt::LeftButton, {},
                      QPoint(spinner.width() / 2, spinner.height() * 3 / 4));
    EXPECT_EQ(text("Text18"), "0");
}

TEST_F(ScheduleTab, AnIntervalThatIsNoNumberEndsTheProgramAtStart)
{
    const auto start = [this] {
        click("Check1");
        type("Text18", "two");
        boxes.expect_run_time_error(
            "Run-time error '13':\n\nType mismatch: 'two' is not a number.");
        click("Command15");
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(1), testing::HasSubstr("'two' is not a number"));
}
} // namespace
