#include "platform/runtime_error.h"
#include "tests/mail/retrieval_room.h"

#include <QTimer>

namespace
{
const QString isp_question = "OK or cancel: Do you want delete incorrect or invalid addresses as "
                             "returned by your ISP? All deleted "
                             "entries can be viewed in the log file.";
const QString subject_question =
    "OK or cancel: Do you want delete messages with a specific subject heading? All deleted "
    "entries can be viewed in the log file.";
const QString warning_end =
    " the database location (including file extension) by clicking the set properties tab\n\n\n"
    "PLEASE NOTE THAT IF THE DATABASE LOCATION IS INCORRECT Velmoradrane will attempt "
    "to access the non valid file and will HANG \n"
    "YOU WILL HAVE TO RESTART THE PROGRAM TO CONTINUE";
const QString location_note = "information: You can provide" + warning_end;
const QString location_warning = "notice: Please provide" + warning_end;
const QString import_question =
    "OK or cancel: This will begin import of new messages into the database";
const QString profile_question =
    "OK or cancel: Is it OK to log on using the Profile name:  Home   ? If you click CANCEL you "
    "can change this setting in the properties section. ";

TEST_F(Retrieval, TheOrderOfAManualRun)
{
    store.inbox = {{"ann@example.org", "Hello", "2026-01-02 03:04:05", "Ann", "  text  "},
                   {"bob@example.org", "Hi", "2026-01-02 03:04:06", "Bob", "b"}};
    settings.write("Profile", "Home");
    prompts.will_answer({true, true, true, true});
    run.Command2_Click();
    EXPECT_EQ(journal,
              QStringList({isp_question, subject_question, location_note, import_question, "tab 11",
                           "set_UserName(Home)", "UserName", profile_question, "SignOn",
                           "SessionID", "set_SessionID(7)", "Fetch", "MsgCount"}) +
                  QStringList("set_MsgIndex(0)") + reading_of_a_message +
                  QStringList("set_MsgIndex(1)") + reading_of_a_message +
                  QStringList({"SignOff", "tab 0"}));
    EXPECT_EQ(work_table(), (QStringList{"ann@example.org", "bob@example.org"}));
    EXPECT_EQ(column("system", "text"),
              (QStringList{"text", "b"})); // blanks at the ends are removed
    EXPECT_EQ(column("system", "name"), (QStringList{"Ann", "Bob"}));
    EXPECT_EQ(column("system", "date"),
              (QStringList{"2026-01-02 03:04:05", "2026-01-02 03:04:06"}));
    EXPECT_EQ(column("system", "subject"), (QStringList{"Hello", "Hi"}));
    EXPECT_EQ(master(), (QStringList{"ann@example.org", "bob@example.org"}));
    EXPECT_EQ(column("master", "name"), (QStringList{"Ann", "Bob"}));
}

TEST_F(Retrieval, EachMessageIsStoredAndTheViewReadAnewBeforeTheNext)
{
    store.inbox = {{"ann@example.org", {}, {}, {}, {}}, {"bob@example.org", {}, {}, {}, {}}};
    on_operation = [this](const QString &operation) {
        if (operation != "set_MsgIndex(1)" && operation != "SignOff")
            return;
        const int done = operation == "SignOff" ? 2 : 1;
        EXPECT_EQ(work_table().size(), done);
        EXPECT_EQ(Data1.record_set().record_count(), done);
        EXPECT_EQ(ProgressBar1.value(), done - 1);
        EXPECT_EQ(master(), QStringList()); // the senders are copied after the last message
        EXPECT_TRUE(please_wait.is_shown());
    };
    run_without_questions();
    EXPECT_EQ(ProgressBar1.value(), 0);
    EXPECT_FALSE(please_wait.is_shown());
}

TEST_F(Retrieval, PleaseWaitStandsAndEventsAreProcessedOnceBeforeTheSignOn)
{
    bool processed = false;
    QTimer::singleShot(0, &window, [&] { processed = true; });
    on_operation = [&](const QString &operation) {
        if (operation == "SignOn") {
            EXPECT_TRUE(processed);
            EXPECT_TRUE(please_wait.is_shown());
        } else if (operation.startsWith("set_UserName")) {
            EXPECT_FALSE(processed);
        }
    };
    run_without_questions();
    EXPECT_TRUE(processed);
}

TEST_F(Retrieval, TheAnswersToThePurgesAreKept)
{
    on_operation = [this](const QString &operation) {
        if (operation == "SignOn") {
            EXPECT_EQ(settings.read("Get ISP"), "yes");
            EXPECT_EQ(settings.read("Get Subject", "absent"), "absent");
        }
    };
    settings.write("WarningMessages", "1");
    prompts.will_answer({true, false});
    run.Command2_Click();
    EXPECT_EQ(settings.read("Get ISP", "absent"), "absent"); // used up by the run
}

TEST_F(Retrieval, AnEarlierAgreementStaysWhenTheAnswerIsCancel)
{
    settings.write("Get Subject", "yes");
    settings.write("Delete", "remove");
    store.inbox = {{"ann@example.org", "remove", {}, {}, {}}};
    run_without_questions();
    EXPECT_EQ(work_table(), QStringList());
    EXPECT_EQ(settings.read("Get Subject", "absent"), "absent");
}

TEST_F(Retrieval, AnotherDatabaseThanTheOneShownEndsTheRun)
{
    Text25.setText("C:\\Other.mdb");
    prompts.will_answer({true, true});
    run.Command2_Click();
    EXPECT_EQ(journal, QStringList({isp_question, subject_question, location_warning}));
    EXPECT_EQ(settings.read("Get ISP"), "yes");
    EXPECT_EQ(settings.read("Get Subject"), "yes");
}

TEST_F(Retrieval, CancellingTheImportEndsTheRun)
{
    prompts.will_answer({true, false, false});
    run.Command2_Click();
    EXPECT_EQ(journal,
              QStringList({isp_question, subject_question, location_note, import_question}));
    EXPECT_EQ(settings.read("Get ISP"), "yes");
}

TEST_F(Retrieval, WarningsAreShownUnlessTheSettingIsExactlyOne)
{
    for (const QString value : {"0", "yes", " 1", ""}) {
        settings.write("WarningMessages", value);
        prompts.will_answer({false, false, false});
        journal.clear();
        run.Command2_Click();
        EXPECT_EQ(journal.size(), 4) << value.toStdString();
    }
}

TEST_F(Retrieval, WithoutWarningsOnlyTheProfileIsAsked)
{
    settings.write("WarningMessages", "1");
    settings.write("Profile", "Home");
    Text25.setText("C:\\Other.mdb"); // not looked at then
    prompts.will_answer({false, false, true});
    run.Command2_Click();
    EXPECT_EQ(journal.mid(0, 6), QStringList({isp_question, subject_question, "tab 11",
                                              "set_UserName(Home)", "UserName", profile_question}));
    EXPECT_EQ(journal.last(), "tab 0");
}

TEST_F(Retrieval, CancellingTheProfileGoesBackToTheFirstTabAndNeverTouchesTheStore)
{
    settings.write("WarningMessages", "1");
    settings.write("Profile", "Home");
    prompts.will_answer({false, false, false});
    run.Command2_Click();
    EXPECT_EQ(journal, QStringList({isp_question, subject_question, "tab 11", "set_UserName(Home)",
                                    "UserName", profile_question, "tab 0"}));
    EXPECT_FALSE(please_wait.is_shown());
}

TEST_F(Retrieval, AnEmptyProfileIsNotAskedAboutAndSignsOnWithAnEmptyName)
{
    run_without_questions();
    EXPECT_TRUE(journal.contains("set_UserName()"));
    EXPECT_EQ(journal.filter("Profile name"), QStringList());
}

TEST_F(Retrieval, AnEmptyInboxStillCopiesTheWorkTableAndResetsTheViews)
{
    insert_system("ann@example.org", "Hello");
    run_without_questions();
    EXPECT_EQ(master(), QStringList{"ann@example.org"});
    EXPECT_TRUE(journal.contains("SignOff"));
    EXPECT_EQ(Data1.record_source().text(), " select * from system");
    EXPECT_EQ(Data2.record_source().text(), "select * from master");
    EXPECT_EQ(Data2.record_set().record_count(), 1);
}

TEST_F(Retrieval, AnEmptyInboxAndWorkTableAreNoFailure)
{
    run_without_questions();
    EXPECT_EQ(master(), QStringList());
}

TEST_F(Retrieval, EveryRunCopiesTheWholeInboxAgain)
{
    store.inbox = {{"ann@example.org", "a", {}, {}, {}}, {"bob@example.org", "b", {}, {}, {}}};
    run_without_questions();
    run_without_questions();
    EXPECT_EQ(work_table().size(), 4);
    EXPECT_EQ(master().size(), 6); // the second copy takes old and new rows
}

TEST_F(Retrieval, TheRowsGoToWhateverTheViewIsBoundTo)
{
    Data1.set_record_source("select * from email");
    Data1.refresh();
    store.inbox = {{"ann@example.org", {}, {}, {}, {}}};
    run_without_questions();
    EXPECT_EQ(column("email", "email"), QStringList{"ann@example.org"});
    EXPECT_EQ(work_table(), QStringList());
}

TEST_F(Retrieval, BothPurgesRunAsAgreedEachWithItsOwnBatch)
{
    settings.write("WarningMessages", "1");
    settings.write("Filter", "Returned mail");
    settings.write("Filter2", "Undeliverable");
    settings.write("Delete", "remove me");
    store.inbox = {
        {"daemon@isp.example", "Returned mail: unknown user", {}, {}, "<gone@example.org>"},
        {"post@isp.example", "Undeliverable", {}, {}, "to: lost@example.org"},
        {"tired@example.org", "please remove me", {}, {}, "thanks"},
        {"ann@example.org", "Hello", {}, {}, {}}};
    insert_master(
        {"gone@example.org", "lost@example.org", "kept@example.org", "tired@example.org"});
    prompts.will_answer({true, true});
    run.Command2_Click();
    EXPECT_EQ(work_table(), QStringList{"ann@example.org"});
    EXPECT_EQ(master(), (QStringList{"kept@example.org", "ann@example.org"}));
    const QString time = "2026-03-04 05:06:07";
    EXPECT_EQ(
        log_file("log.log"),
        time +
            "\r\ndaemon@isp.example\r\ngone@example.org\r\ndaemon@isp.example\r\nReturned "
            "mail\r\n" +
            time + "\r\n" + // the second heading is not set: an empty batch
            time +
            "\r\npost@isp.example\r\nlost@example.org\r\npost@isp.example\r\nUndeliverable\r\n" +
            time + "\r\ntired@example.org\r\n");
    EXPECT_EQ(log_file("system.log"), time + "\r\ntired@example.org\r\n");
    EXPECT_EQ(Data1.record_source().text(), " select * from system");
    EXPECT_EQ(Data2.record_source().text(), "select * from master");
}

TEST_F(Retrieval, AMessageThatVanishedIsSkipped)
{
    store.inbox = {{"ann@example.org", {}, {}, {}, {}},
                   {"b@x", {}, {}, {}, {}},
                   {"carl@example.org", {}, {}, {}, {}}};
    store.gone = {1};
    run_without_questions();
    EXPECT_EQ(work_table(), (QStringList{"ann@example.org", "carl@example.org"}));
    EXPECT_EQ(noted, QStringList{"1 of the messages had gone before they could be read"});
}

TEST_F(Retrieval, TellsHowFarItIs)
{
    store.inbox = {{"ann@example.org", {}, {}, {}, {}}, {"bob@example.org", {}, {}, {}, {}}};
    run_without_questions();
    EXPECT_EQ(told, (QStringList{"Message 1 of 2", "Message 2 of 2", "clear"}));
    EXPECT_EQ(noted, QStringList{""});
}

TEST_F(Retrieval, TheBarTakesNoMoreThanItsMaximum)
{
    for (int i = 0; i < 150; ++i)
        store.inbox.append({"ann@example.org", {}, {}, {}, {}});
    on_operation = [this](const QString &operation) {
        if (operation == "SignOff") {
            EXPECT_EQ(ProgressBar1.value(), 100);
        }
    };
    run_without_questions();
    EXPECT_EQ(work_table().size(), 150);
}

TEST_F(Retrieval, AFlagThatIsNotExactlyYesIsNoAgreement)
{
    settings.write("Filter", "Returned");
    store.inbox = {{"daemon@isp.example", "Returned", {}, {}, {}}};
    for (const QString flag : {"Yes", "1", " yes"}) {
        settings.write("Get ISP", flag);
        run_without_questions();
        EXPECT_EQ(settings.read("Get ISP"), flag);
        EXPECT_EQ(log_file("log.log"), "(none)");
    }
}

TEST_F(Retrieval, AnAgreementSurvivesAPurgeThatFails)
{
    settings.write("WarningMessages", "1");
    settings.write("Filter", "can't");
    prompts.will_answer({true, true});
    EXPECT_THROW(run.Command2_Click(), RuntimeError);
    EXPECT_EQ(settings.read("Get ISP"), "yes");
    EXPECT_EQ(settings.read("Get Subject"), "yes");
}

class FailingStore : public Retrieval, public testing::WithParamInterface<const char *>
{
};

TEST_P(FailingStore, IsNotCaughtAndNothingRunsAfterwards)
{
    store.inbox = {{"ann@example.org", {}, {}, {}, {}}};
    store.fail_at(GetParam());
    settings.write("WarningMessages", "1");
    settings.write("Filter", "x");
    prompts.will_answer({true, false});
    EXPECT_THROW(run.Command2_Click(), RuntimeError);
    EXPECT_TRUE(journal.last().startsWith(GetParam())) << journal.last().toStdString();
    EXPECT_EQ(master(), QStringList());
    EXPECT_EQ(log_file("log.log"), "(none)");
}

INSTANTIATE_TEST_SUITE_P(Operations, FailingStore,
                         testing::Values("SignOn", "SessionID", "set_SessionID", "Fetch",
                                         "MsgCount", "set_MsgIndex", "MsgOrigAddress", "MsgSubject",
                                         "MsgDateReceived", "MsgOrigDisplayName", "MsgNoteText",
                                         "SignOff"));

} // namespace
