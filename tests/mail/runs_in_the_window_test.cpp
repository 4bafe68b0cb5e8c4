#include "tests/support/program_window.h"

#include <QTableView>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
const QString time_stamp = "2026-03-04 05:06:07";

class RunsInTheWindow : public ProgramWindow
{
protected:
    RunsInTheWindow()
    {
        settings.write("WarningMessages", "1");
        mail.inbox = {{"daemon@isp.example", "Returned mail", "2026-01-02 03:04:05", "Daemon",
                       "<gone@example.org>"},
                      {"tired@example.org", "Remove me", "2026-01-02 03:04:06", "Tired", "please"},
                      {"ann@example.org", "Hello", "2026-01-02 03:04:07", "Ann", "text"}};
    }

    QStringList master() { return rows("master", "email"); }
    QStringList work_table() { return rows("system", "email"); }
    QByteArray last_batch() { return content("c:\\Ostrix\\system.log"); }

    void expect_purge_questions(bool returned_mail, bool subject)
    {
        const QString in_log = " All deleted entries can be viewed in the log file.";
        boxes.expect_ok_cancel(
            "Do you want delete incorrect or invalid addresses as returned by your "
            "ISP?" +
                in_log,
            returned_mail);
        boxes.expect_ok_cancel(
            "Do you want delete messages with a specific subject heading?" + in_log, subject);
    }
};

TEST_F(RunsInTheWindow, GetEmailsCopiesPurgesAndShows)
{
    settings.write("Filter1", "Returned mail");
    settings.write("Delete", "remove me");
    add_master({"gone@example.org", "kept@example.org"});
    QString tab_while_reading;
    mail.on_call["Fetch"] = [&] { tab_while_reading = caption_of_current_tab(); };
    expect_purge_questions(true, true);
    click("Command2");
    EXPECT_EQ(tab_while_reading, "New Email (System Table)");
    EXPECT_EQ(caption_of_current_tab(), "View Master Table");
    EXPECT_EQ(work_table(), QStringList{"ann@example.org"});
    EXPECT_EQ(master(), (QStringList{"kept@example.org", "ann@example.org"}));
    EXPECT_EQ(grid("MSFlexGrid5"), (QStringList{"kept@example.org|", "ann@example.org|Ann"}));
    EXPECT_EQ(grid("MSFlexGrid1"),
              QStringList{"ann@example.org|Hello|2026-01-02 03:04:07|Ann|text"});
    EXPECT_EQ(content("c:\\Ostrix\\log.log").count(time_stamp.toUtf8()), 4);
    EXPECT_EQ(last_batch(), "2026-03-04 05:06:07\r\ntired@example.org\r\n");
}

TEST_F(RunsInTheWindow, TheGridsColumnsHaveTheirWidthsAfterAPurge)
{
    settings.write("Filter", "Returned mail");
    add_system("daemon@isp.example", "Returned mail", "gone@example.org");
    auto &grid_view = control<QTableView>("MSFlexGrid1");
    grid_view.setColumnWidth(0, 20);
    grid_view.setColumnWidth(4, 20);
    click("Command28");
    click("Command22");
    grid("MSFlexGrid1");
    const QList<int> widths = {167, 200, 233, 333, 167}; // 2500, 3000, 3500, 5000, 2500 twips
    for (int column = 0; column < 5; ++column)
        EXPECT_EQ(grid_view.columnWidth(column), widths[column]) << column;
}

TEST_F(RunsInTheWindow, Command22CollectsAndCommand10Deletes)
{
    settings.write("Filter", "Returned mail");
    add_system("daemon@isp.example", "Returned mail", "gone@example.org");
    add_master({"gone@example.org", "kept@example.org"});
    click("Command28");
    click("Command22");
    EXPECT_EQ(text("Text27"),
              "\r\ndaemon@isp.example\r\ngone@example.org\r\ndaemon@isp.example\r\nReturned mail");
    EXPECT_EQ(master().size(), 2);
    click("Command1");
    click("Command10");
    EXPECT_EQ(master(), QStringList{"kept@example.org"});
    EXPECT_EQ(work_table(), QStringList());
}

TEST_F(RunsInTheWindow, Command23CollectsTheSendersOfTheUnwantedHeading)
{
    settings.write("Delete", "remove");
    settings.write("Filter", "Hello");
    add_system("tired@example.org", "Remove me");
    add_system("ann@example.org", "Hello");
    click("Command28");
    click("Command23");
    EXPECT_EQ(text("Text27"), "\r\ntired@example.org");
}

TEST_F(RunsInTheWindow, EachFilterButtonReadsItsOwnHeading)
{
    const QList<QPair<QString, QString>> buttons = {
        {"cmdFilterit", "Filter"}, {"Command58", "Filter1"}, {"Command59", "Filter2"}};
    for (const auto &[button, key] : buttons) {
        settings.write(key, "Heading of " + key);
        add_system(key + "@isp.example", "Heading of " + key, "gone@example.org");
    }
    click("Command28");
    for (const auto &[button, key] : buttons) {
        boxes.expect_notice("Finished!");
        click(button);
        EXPECT_TRUE(last_batch().endsWith(("\r\nHeading of " + key + "\r\n").toUtf8()));
        EXPECT_FALSE(work_table().contains(key + "@isp.example"));
    }
}

TEST_F(RunsInTheWindow, DeleteRunsTheSubjectHeadingCycle)
{
    settings.write("Delete", "remove");
    add_system("tired@example.org", "Remove me");
    add_master({"tired@example.org", "kept@example.org"});
    click("Command28");
    boxes.expect_notice("Finished!");
    click("cmdDel");
    EXPECT_EQ(master(), QStringList{"kept@example.org"});
    EXPECT_EQ(grid("MSFlexGrid5"), QStringList{"kept@example.org|"});
    EXPECT_EQ(grid("MSFlexGrid1"), QStringList());
}

TEST_F(RunsInTheWindow, Command11CopiesAndCommand27PurgesTheMessageTable)
{
    add_system("ann@example.org", "Hello");
    click("Command11");
    EXPECT_EQ(master(), QStringList{"ann@example.org"});
    run_sql(
        "insert into email(email, subject, text) values ('gone@x.org', 'Returned', 'gone@x.org')");
    type("Text2", "Returned");
    click("Command27");
    EXPECT_EQ(rows("email"), QStringList());
}

TEST_F(RunsInTheWindow, TheTryOutButtonsWork)
{
    set_text("RichTextBox2", "to ann@example.org");
    click("Command31");
    EXPECT_EQ(text("Text33"), "ann");
    run_sql("insert into email2(email) values ('gone@x.org')");
    set_text("Text35", "gone@x.org");
    boxes.expect_notice("gone@x.org");
    click("Command32");
    EXPECT_EQ(rows("email2"), QStringList());
}

TEST_F(RunsInTheWindow, TheScheduledRunStopsTheTimerAndIsUnattended)
{
    auto &timer = control<QTimer>("Timer1");
    EXPECT_EQ(timer.interval(), 60000);
    EXPECT_FALSE(timer.isActive());
    timer.start();
    bool attended = true;
    mail.on_call["SignOn"] = [&] {
        attended = window().is_attended();
        EXPECT_FALSE(timer.isActive());
    };
    click("runSchedule");
    EXPECT_FALSE(attended);
    EXPECT_TRUE(window().is_attended());
    EXPECT_FALSE(timer.isActive());
    EXPECT_EQ(work_table().size(), 3);
    EXPECT_EQ(boxes.shown(), QStringList());
}

TEST_F(RunsInTheWindow, AFailureOfTheStoreEndsTheProgramAfterTheRowsBefore)
{
    const auto run = [this] {
        mail.on_any_call = [](const QString &operation) {
            if (operation == "set_MsgIndex(2)")
                throw RuntimeError(error_number::mail_failure, "The line is dead");
        };
        expect_purge_questions(false, false);
        boxes.expect_run_time_error("Run-time error '32000':\n\nThe line is dead");
        click("Command2");
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(1), testing::HasSubstr("The line is dead"));
    EXPECT_EQ(work_table(), (QStringList{"daemon@isp.example", "tired@example.org"}));
    EXPECT_EQ(content("c:\\Ostrix\\Ostrix.mdb-wal"), "(none)"); // the databases were closed
}

TEST_F(RunsInTheWindow, ClosingTheWindowDuringARunEndsTheProgramWithItsDatabaseWhole)
{
    const auto run = [this] {
        QTimer::singleShot(0, &window(), [this] { window().close(); });
        expect_purge_questions(false, false);
        boxes.before_next_answer([this] { window().close(); });
        click("Command2");
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(work_table(), QStringList());
    EXPECT_EQ(content("c:\\Ostrix\\Ostrix.mdb-wal"), "(none)");
}
} // namespace
