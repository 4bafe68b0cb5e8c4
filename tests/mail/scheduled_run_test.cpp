// The retrieval that the schedule starts.
#include "platform/runtime_error.h"
#include "platform/skipped_steps.h"
#include "tests/mail/retrieval_room.h"

#include <QDir>

namespace
{
class ScheduledRun : public Retrieval
{
protected:
    SkippedSteps skipped;

    ScheduledRun()
    {
        store.inbox = {{"daemon@isp.example", "Returned mail", "2026-01-02 03:04:05", "Daemon",
                        "<gone@example.org>"},
                       {"ann@example.org", "Hello", "2026-01-02 03:04:06", "Ann", "text"}};
    }
};

TEST_F(ScheduledRun, AsksNothingAndStopsTheTimerFirst)
{
    settings.write("Profile", "Home");
    Text25.setText("C:\\Other.mdb");
    run.runSchedule_Click(skipped);
    EXPECT_EQ(journal, QStringList({"timer stopped", "tab 11", "set_UserName(Home)", "SignOn",
                                    "SessionID", "set_SessionID(7)", "Fetch", "MsgCount"}) +
                           QStringList("set_MsgIndex(0)") + reading_of_a_message +
                           QStringList("set_MsgIndex(1)") + reading_of_a_message +
                           QStringList({"SignOff", "tab 0"}));
    EXPECT_TRUE(skipped.is_empty()) << skipped.list().toStdString();
    EXPECT_EQ(finished, 1);
}

TEST_F(ScheduledRun, RunsEveryPurgeWithoutAnAgreement)
{
    settings.write("Filter1", "Returned mail");
    settings.write("Delete", "Hello");
    settings.write("Get ISP", "yes"); // neither read nor deleted
    insert_master({"gone@example.org", "kept@example.org"});
    run.runSchedule_Click(skipped);
    EXPECT_EQ(work_table(), QStringList());
    EXPECT_EQ(master(), QStringList{"kept@example.org"});
    EXPECT_EQ(log_file("log.log").count("2026-03-04 05:06:07"), 4);
    EXPECT_EQ(settings.read("Get ISP"), "yes");
    EXPECT_EQ(settings.read("Get Subject", "absent"), "absent");
}

TEST_F(ScheduledRun, NoPleaseWaitStandsWhileItReads)
{
    on_operation = [this](const QString &) { EXPECT_FALSE(please_wait.is_shown()); };
    run.runSchedule_Click(skipped);
}

TEST_F(ScheduledRun, AFailedSignOnIsNotIgnored)
{
    store.fail_at("SignOn");
    EXPECT_THROW(run.runSchedule_Click(skipped), RuntimeError);
    EXPECT_EQ(finished, 0);
}

TEST_F(ScheduledRun, AFailedFetchIsSkipped)
{
    store.fail_at("Fetch");
    run.runSchedule_Click(skipped);
    EXPECT_EQ(skipped.list(), "The store says no");
    EXPECT_EQ(work_table().size(), 2);
    EXPECT_EQ(journal.last(), "tab 0");
}

TEST_F(ScheduledRun, WithoutACountNothingIsCopiedAndTheRestRuns)
{
    insert_system("old@example.org", "Hello");
    store.fail_at("MsgCount");
    run.runSchedule_Click(skipped);
    EXPECT_EQ(work_table(), QStringList{"old@example.org"});
    EXPECT_EQ(master(), QStringList{"old@example.org"});
}

TEST_F(ScheduledRun, AFieldThatCannotBeReadStaysEmpty)
{
    store.fail_at("MsgSubject");
    run.runSchedule_Click(skipped);
    EXPECT_EQ(skipped.list(), "The store says no (2 times)");
    EXPECT_EQ(column("system", "subject"), (QStringList{"", ""}));
    EXPECT_EQ(column("system", "name"), (QStringList{"Daemon", "Ann"}));
}

TEST_F(ScheduledRun, AFailedBindingIsNotIgnored)
{
    store.fail_at("set_SessionID");
    EXPECT_THROW(run.runSchedule_Click(skipped), RuntimeError);
}

TEST_F(ScheduledRun, AMessageThatCannotBeMadeCurrentLeavesTheOneBefore)
{
    on_operation = [](const QString &operation) {
        if (operation == "set_MsgIndex(1)")
            throw RuntimeError(error_number::mail_failure, "The store says no");
    };
    run.runSchedule_Click(skipped);
    EXPECT_EQ(work_table(), (QStringList{"daemon@isp.example", "daemon@isp.example"}));
}

TEST_F(ScheduledRun, AViewThatTakesNoRowsStoresNothingAndTheRestRuns)
{
    Data1.set_record_source("select distinct email from system");
    Data1.refresh();
    run.runSchedule_Click(skipped);
    EXPECT_EQ(work_table(), QStringList());
    EXPECT_EQ(journal.last(), "tab 0");
}

TEST_F(ScheduledRun, AFailedSignOffIsSkipped)
{
    store.fail_at("SignOff");
    run.runSchedule_Click(skipped);
    EXPECT_EQ(master().size(), 2);
}

TEST_F(ScheduledRun, AHeadingThatBreaksItsStatementCollectsNothing)
{
    settings.write("Filter", "can't");
    settings.write("Filter1", "Returned mail");
    insert_master({"gone@example.org"});
    run.runSchedule_Click(skipped);
    EXPECT_EQ(work_table(), QStringList{"ann@example.org"});
    EXPECT_EQ(master(), QStringList{"ann@example.org"});
    EXPECT_TRUE(skipped.list().contains("can't"));
}

TEST_F(ScheduledRun, MessagesThatHadGoneAreToldAmongWhatItPassedOver)
{
    store.gone = {0};
    run.runSchedule_Click(skipped);
    EXPECT_EQ(work_table(), QStringList{"ann@example.org"});
    EXPECT_EQ(skipped.list(), "1 of the messages had gone before they could be read");
}

TEST_F(ScheduledRun, LogFilesThatCannotBeWrittenDoNotStopIt)
{
    QDir().mkpath(home.file("data/Ostrix/log.log")); // a folder in the file's place
    QDir().mkpath(home.file("data/Ostrix/system.log"));
    settings.write("Filter", "Returned mail");
    run.runSchedule_Click(skipped);
    EXPECT_EQ(work_table().size(), 2);
    EXPECT_EQ(journal.last(), "tab 0");
    EXPECT_FALSE(please_wait.is_shown());
}
} // namespace
