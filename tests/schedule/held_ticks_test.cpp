// Ticks that come while something else is going on.
#include "tests/schedule/tick_room.h"

#include <QAction>
#include <QApplication>
#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace
{
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

TEST_F(TickInAnImport, WaitsAlsoBeneathABoxOfAnotherCommand)
{
    qsizetype runs_beneath = -1;
    const WhenShown turn("frmIMport", [&] {
        boxes.expect_save_file({}, "Text files (*.*)");
        boxes.before_next_answer([&] {
            pass_minutes(1);
            runs_beneath = runs();
        });
        window().findChild<QWidget *>("frmIMport")->findChild<QAction *>("SaveAs")->trigger();
    });
    import_list();
    EXPECT_EQ(runs_beneath, 0);
    end_of_the_wait();
    EXPECT_EQ(runs(), 1);
}

TEST_F(TickInAnImport, RunsNothingOnADayThatIsNotTicked)
{
    const WhenShown turn("frmIMport", [&] { pass_minutes(1); });
    import_list();
    set_now("2026-03-03 00:00:10");
    end_of_the_wait();
    EXPECT_EQ(runs(), 0);
    EXPECT_EQ(history(), QStringList());
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
} // namespace
