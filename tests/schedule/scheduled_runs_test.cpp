// Ticks, the runs that they start, and what a person sees of them.
#include "tests/schedule/schedule_room.h"

#include <QApplication>
#include <QStatusBar>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace
{
const QStringList no_boxes;

class Tick : public ScheduleRoom
{
protected:
    Tick() { mail.inbox = {{"ann@example.org", "Hello", "2026-01-02 03:04:05", "Ann", "text"}}; }

    /// Started on the Monday 2026-03-02 at 09:30:00.
    void start(const QStringList &ticked_days, const QString &hours, const QString &minutes)
    {
        set_now("2026-03-02 09:30:00");
        for (const QString &day : ticked_days)
            click(day);
        set_text("Text18", hours);
        set_text("Text19", minutes);
        click("Command15");
    }

    qsizetype runs() { return mail.calls.count("SignOn"); }
};

TEST_F(Tick, RunsEveryTwoHoursAndMovesThePeriodStart)
{
    start({"Check1"}, "2", "0");
    pass_minutes(89);
    EXPECT_EQ(history(), QStringList());
    pass_minutes(1);
    EXPECT_EQ(history(), QStringList{"2026-03-02 11:00:00"});
    EXPECT_EQ(text("Text20"), "2026-03-02 11:00:00");
    EXPECT_TRUE(is_scheduled());
    pass_minutes(240);
    EXPECT_EQ(history(),
              (QStringList{"2026-03-02 11:00:00", "2026-03-02 13:00:00", "2026-03-02 15:00:00"}));
    EXPECT_EQ(runs(), 3);
    EXPECT_EQ(rows("system", "email").size(), 3);
    EXPECT_EQ(state(), "Schedule: next run at 2026-03-02 17:00, last run at 2026-03-02 15:00:00");
    EXPECT_EQ(boxes.shown(), no_boxes);
}

TEST_F(Tick, RunsForAWholeWeekOnTheTickedDays)
{
    start({"Check8"}, "1", "0");
    pass_minutes(7 * 24 * 60);
    EXPECT_EQ(runs(), 7 * 24);
    EXPECT_EQ(history().constFirst(), "2026-03-02 10:00:00");
    EXPECT_EQ(history().constLast(), "2026-03-09 09:00:00");
}

TEST_F(Tick, RunsEveryFiveMinutes)
{
    start({"Check1"}, "0", "5");
    pass_minutes(11);
    EXPECT_EQ(history(), (QStringList{"2026-03-02 09:35:00", "2026-03-02 09:40:00"}));
}

TEST_F(Tick, HoursWinOverMinutes)
{
    start({"Check1"}, "1", "10");
    pass_minutes(29);
    EXPECT_EQ(history(), QStringList());
    pass_minutes(1);
    EXPECT_EQ(history(), QStringList{"2026-03-02 10:00:00"});
}

TEST_F(Tick, ATickThatMissesItsMinuteNeverFiresAgainUntilTheNextStart)
{
    start({"Check1"}, "0", "5");
    set_now("2026-03-02 09:36:00");
    tick();
    pass_minutes(60);
    EXPECT_EQ(runs(), 0);
    EXPECT_EQ(state(), "Schedule: no run will come; start it again");
    click("Command15");
    pass_minutes(5);
    EXPECT_EQ(runs(), 1);
}

TEST_F(Tick, ADayThatIsNotTickedIsPassedSilentlyAndEndsTheSchedule)
{
    start({"Check1"}, "1", "0"); // Monday alone
    pass_minutes(30);
    EXPECT_EQ(runs(), 1);
    set_now("2026-03-03 00:00:30");
    pass_minutes(24 * 60);
    EXPECT_EQ(runs(), 1);
    set_now("2026-03-09 09:00:00"); // Monday again: the count has long passed the interval
    tick();
    EXPECT_EQ(runs(), 1);
    EXPECT_TRUE(is_scheduled());
    EXPECT_EQ(boxes.shown(), no_boxes);
}

TEST_F(Tick, EachDayBoxStandsForItsOwnDay)
{
    const QStringList day_boxes = {"Check1", "Check2", "Check3", "Check4",
                                   "Check5", "Check6", "Check7"};
    for (int day = 0; day < 7; ++day) {
        click(day_boxes[day]);
        set_text("Text19", "1");
        for (int today = 0; today < 7; ++today) {
            set_now(QStringLiteral("2026-03-0%1 12:00:00").arg(today + 2)); // from Monday on
            click("Command15");
            mail.calls.clear();
            pass_minutes(1);
            EXPECT_EQ(runs(), today == day ? 1 : 0) << day << " on " << today;
        }
        click(day_boxes[day]);
    }
}

TEST_F(Tick, WithoutADayItSaysSoEachTime)
{
    start({"Check1"}, "1", "0");
    click("Check1");
    for (int i = 0; i < 2; ++i) {
        boxes.expect_notice("Please indicate which days you would like to run the schedule!");
        pass_minutes(1);
    }
    EXPECT_TRUE(boxes.is_done());
    EXPECT_TRUE(is_scheduled());
}

TEST_F(Tick, WithoutAnIntervalItSaysSoEachTime)
{
    start({"Check1"}, "1", "0");
    set_text("Text18", "0");
    for (int i = 0; i < 2; ++i) {
        boxes.expect_notice("You have to set the interval between program runs");
        pass_minutes(1);
    }
    EXPECT_TRUE(boxes.is_done());
    EXPECT_TRUE(is_scheduled());
}

TEST_F(Tick, ItsBoxIsNotPiledUpWhileNobodyAnswers)
{
    start({"Check1"}, "1", "0");
    set_text("Text18", "0");
    boxes.expect_notice("You have to set the interval between program runs");
    boxes.before_next_answer([this] { pass_minutes(3); });
    pass_minutes(1);
    EXPECT_EQ(boxes.shown().size(), 1);
}

TEST_F(Tick, TheHistoryAndThePeriodStartAreWrittenBeforeTheRunAndTheTimerStandsMeanwhile)
{
    start({"Check1"}, "0", "1");
    bool as_said = false;
    mail.on_call["SignOn"] = [&] {
        as_said = history() == QStringList{"2026-03-02 09:31:00"} &&
                  text("Text20") == "2026-03-02 09:31:00" && !is_scheduled() &&
                  state() == "Schedule: the run of 2026-03-02 09:31:00 is going on";
    };
    pass_minutes(1);
    EXPECT_TRUE(as_said);
    EXPECT_TRUE(is_scheduled());
}

TEST_F(Tick, AStopDuringTheRunIsUndone)
{
    start({"Check1"}, "0", "1");
    mail.on_call["SignOn"] = [&] { click("Command16"); };
    pass_minutes(1);
    EXPECT_TRUE(is_scheduled());
}

TEST_F(Tick, AStopInTheMiddleOfTheTickIsUndoneToo)
{
    start({"Check1"}, "0", "1");
    QTimer::singleShot(0, &window(), [this] { click("Command16"); });
    pass_minutes(1);
    EXPECT_EQ(runs(), 1);
    EXPECT_TRUE(is_scheduled());
}

TEST_F(Tick, WaitsWhileTheMailStoreIsInTheMiddleOfSomething)
{
    start({"Check1"}, "0", "1");
    settings.write("WarningMessages", "1");
    mail.on_call["Fetch"] = [this] { // a manual run whose server lets it wait
        mail.on_call.clear();
        mail.busy = true;
        pass_minutes(1);
        mail.busy = false;
    };
    const QString in_log = " All deleted entries can be viewed in the log file.";
    boxes.expect_ok_cancel("Do you want delete incorrect or invalid addresses as returned by your "
                           "ISP?" +
                               in_log,
                           false);
    boxes.expect_ok_cancel("Do you want delete messages with a specific subject heading?" + in_log,
                           false);
    click("Command2");
    EXPECT_EQ(runs(), 1);
    EXPECT_EQ(history(), QStringList());
    QMetaObject::invokeMethod(&control<QTimer>("held_tick"), "timeout");
    EXPECT_EQ(runs(), 2);
    EXPECT_EQ(history(), QStringList{"2026-03-02 09:31:00"});
}

/// Does something in the turn of the event loop that a command gives once a window has come.
class WhenShown : public QObject
{
public:
    WhenShown(const QString &name, std::function<void()> action)
        : name_(name),
          action_(std::move(action))
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && watched->objectName() == name_ && action_)
            QTimer::singleShot(0, this, std::exchange(action_, nullptr));
        return false;
    }

private:
    QString name_;
    std::function<void()> action_;
};

class TickInAnImport : public Tick
{
protected:
    TickInAnImport()
    {
        write_file("C:\\Ostrix\\list.csv", "a@x.org,b@x.org,c@x.org");
        start({"Check1"}, "0", "1");
    }
    void import_list()
    {
        boxes.expect_any_notice();
        boxes.expect_any_notice();
        boxes.expect_open_file(home.file("data/Ostrix/list.csv"), "All files (*.*)");
        choose("Import");
    }
    void end_of_the_wait() { QMetaObject::invokeMethod(&control<QTimer>("held_tick"), "timeout"); }
};

TEST_F(TickInAnImport, WaitsForItsEnd)
{
    bool was_waiting = false;
    const WhenShown turn("frmIMport", [&] {
        pass_minutes(1);
        end_of_the_wait(); // which begins anew
        was_waiting = runs() == 0 && history().isEmpty();
    });
    import_list();
    EXPECT_TRUE(was_waiting);
    EXPECT_EQ(rows("master", "email"), (QStringList{"b@x.org", "a@x.org"}));
    EXPECT_TRUE(control<QTimer>("held_tick").isActive());
    end_of_the_wait();
    EXPECT_EQ(runs(), 1);
    EXPECT_EQ(history(), QStringList{"2026-03-02 09:31:00"});
}

TEST_F(TickInAnImport, IsNotLostWhenTheMinuteIsOver)
{
    const WhenShown turn("frmIMport", [&] {
        pass_minutes(1);
        pass_minutes(1); // not due any more, as an import of some minutes may have it
    });
    import_list();
    end_of_the_wait();
    EXPECT_EQ(runs(), 1);
    EXPECT_EQ(history(), QStringList{"2026-03-02 09:32:00"});
    EXPECT_EQ(text("Text20"), "2026-03-02 09:32:00");
    end_of_the_wait();
    EXPECT_EQ(runs(), 1);
}

TEST_F(TickInAnImport, RunsNothingAfterAStop)
{
    const WhenShown turn("frmIMport", [&] {
        pass_minutes(1);
        click("Command16");
    });
    import_list();
    end_of_the_wait();
    EXPECT_EQ(runs(), 0);
}

TEST_F(TickInAnImport, RunsNothingAfterANewStart)
{
    const WhenShown turn("frmIMport", [&] {
        pass_minutes(1);
        click("Command15");
    });
    import_list();
    end_of_the_wait();
    EXPECT_EQ(runs(), 0);
}

// The inbox is not left alone because a box waits for a person who has gone home.
TEST_F(Tick, DoesNotWaitForAnAnswer)
{
    start({"Check1"}, "0", "1");
    boxes.expect_any_notice();
    boxes.before_next_answer([this] { pass_minutes(1); });
    choose("Backup");
    EXPECT_EQ(runs(), 1);
}

TEST_F(Tick, ARefreshInTheMiddleOfTheTickRunsNothing)
{
    for (const bool in_hours : {false, true}) {
        start({"Check1"}, in_hours ? "1" : "0", "1");
        boxes.expect_notice("The schedule has been stopped!", NoticeIcon::Information);
        QTimer::singleShot(0, &window(), [this] { click("Command17"); });
        pass_minutes(1);
        EXPECT_FALSE(is_scheduled());
        EXPECT_EQ(runs(), 0);
        click("Check1");
    }
}

TEST_F(Tick, AStartDuringTheRunNestsNoOther)
{
    start({"Check1"}, "0", "1");
    mail.on_call["SignOn"] = [this] {
        mail.on_call.clear();
        click("Command15");
        pass_minutes(1);
    };
    pass_minutes(1);
    EXPECT_EQ(runs(), 1);
    EXPECT_TRUE(is_scheduled());
}

TEST_F(Tick, EverydayDoesNotCountOnlyTheSevenBoxesDo)
{
    start({"Check8"}, "0", "1");
    click("Check1"); // today
    pass_minutes(2);
    EXPECT_EQ(runs(), 0);
    EXPECT_TRUE(control<QCheckBox>("Check8").isChecked());
}

TEST_F(Tick, MissingDaysAreToldBeforeAMissingInterval)
{
    start({"Check1"}, "0", "1");
    set_text("Text19", "0");
    click("Check1");
    boxes.expect_notice("Please indicate which days you would like to run the schedule!");
    pass_minutes(1);
    EXPECT_EQ(boxes.shown().size(), 1);
}

TEST_F(Tick, WhateverEndsARunShowsNoBox)
{
    start({"Check1"}, "0", "1");
    mail.on_call["SignOn"] = [] { throw std::bad_alloc(); };
    pass_minutes(1);
    EXPECT_EQ(boxes.shown(), no_boxes);
    EXPECT_TRUE(is_scheduled());
    EXPECT_TRUE(text("progress_text").contains("passed over one step"));
    EXPECT_EQ(caption_of_current_tab(), "View Master Table");
}

TEST_F(Tick, WhatAPersonStartsDuringItsRunIsAttended)
{
    start({"Check1"}, "0", "1");
    bool is_attended = false;
    mail.on_call["SignOn"] = [&] {
        mail.on_call.clear();
        mail.on_call["SignOn"] = [&] { is_attended = window().is_attended(); };
        set_text("Text12", "a@x.org");
        click("Command13");
        EXPECT_FALSE(window().is_attended());
    };
    pass_minutes(1);
    EXPECT_TRUE(is_attended);
    EXPECT_TRUE(window().is_attended());
}

TEST_F(Tick, AClockSetBackRunsNothingUntilItHasCaughtUp)
{
    start({"Check1"}, "0", "5");
    set_now("2026-03-02 09:00:00");
    pass_minutes(34);
    EXPECT_EQ(runs(), 0);
    pass_minutes(1); // 09:35
    EXPECT_EQ(runs(), 1);
}

TEST_F(Tick, TheTimeOfTheLastFinishedRetrievalIsShown)
{
    EXPECT_EQ(text("last_retrieval"), "");
    start({"Check1"}, "0", "1");
    mail.on_call["SignOff"] = [this] { now = now.addSecs(30); }; // the run takes its time
    pass_minutes(1);
    EXPECT_EQ(text("last_retrieval"), "2026-03-02 09:31:30");
    EXPECT_EQ(text("Text21"), ""); // nothing but Refresh writes there
}

TEST_F(Tick, AFailedSignOnShowsNoBoxAndTheScheduleGoesOn)
{
    start({"Check1"}, "0", "1");
    mail.fail_at("SignOn");
    pass_minutes(1);
    EXPECT_EQ(boxes.shown(), no_boxes);
    EXPECT_TRUE(is_scheduled());
    EXPECT_EQ(text("last_retrieval"), ""); // it did not come to its end
    EXPECT_EQ(text("progress_text"),
              "The run of 2026-03-02 09:31:00 passed over one step: The store says no");
    EXPECT_TRUE(control<QListWidget>("List2").item(0)->toolTip().contains("The store says no"));
    mail.on_call.clear();
    pass_minutes(1);
    EXPECT_EQ(rows("system", "email"), QStringList{"ann@example.org"});
}

TEST_F(Tick, WhatEveryFailingStepSaysIsInTheToolTipAsPlainText)
{
    start({"Check1"}, "0", "1");
    mail.on_call["MsgSubject"] = [] {
        throw RuntimeError(error_number::mail_failure, "<b>No</b>\nsubject");
    };
    mail.on_call["SignOff"] = [] { throw RuntimeError(error_number::mail_failure, "No end"); };
    pass_minutes(1);
    EXPECT_EQ(boxes.shown(), no_boxes);
    const QString tool_tip = control<QListWidget>("List2").item(0)->toolTip();
    EXPECT_TRUE(tool_tip.contains("&lt;b&gt;No&lt;/b&gt;\nsubject\nNo end"))
        << tool_tip.toStdString();
    EXPECT_EQ(text("progress_text"), "The run of 2026-03-02 09:31:00 passed over 2 steps: "
                                     "<b>No</b> subject No end");
    EXPECT_EQ(rows("system", "email"), QStringList{"ann@example.org"});
}

TEST_F(Tick, ALongNoteDoesNotWidenTheWindow)
{
    start({"Check1"}, "0", "1");
    mail.on_call["SignOn"] = [] {
        throw RuntimeError(error_number::mail_failure, QString(5000, 'x'));
    };
    pass_minutes(1);
    EXPECT_LE(window().minimumSizeHint().width(), 1000);
}

TEST_F(Tick, APeriodStartThatIsNoDateTimeEndsTheProgram)
{
    const auto run = [this] {
        start({"Check1"}, "1", "0");
        set_text("Text20", "");
        boxes.expect_run_time_error("Run-time error '13':\n\nType mismatch: the period start '' is "
                                    "not a date-time like 2026-01-31 09:30:00.");
        pass_minutes(1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(1), testing::HasSubstr("Type mismatch"));
}

TEST_F(Tick, AnIntervalThatIsNoNumberEndsTheProgram)
{
    const auto run = [this] {
        start({"Check1"}, "1", "0");
        set_text("Text18", "");
        boxes.expect_run_time_error("Run-time error '13':\n\nType mismatch: '' is not a number.");
        pass_minutes(1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(1), testing::HasSubstr("Type mismatch"));
}

TEST_F(Tick, NothingOfTheScheduleOutlivesTheProgram)
{
    start({"Check1"}, "1", "0");
    pass_minutes(30);
    close_window();
    EXPECT_EQ(days(), QList<bool>(7, false));
    EXPECT_EQ(history(), QStringList());
    EXPECT_EQ(text("Text20"), "");
    EXPECT_EQ(text("Text18"), "0");
    EXPECT_FALSE(is_scheduled());
}
} // namespace
