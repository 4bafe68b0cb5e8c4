#include "mail/log_replay.h"
#include "platform/runtime_error.h"
#include "platform/skipped_steps.h"
#include "tests/mail/purge_room.h"

namespace
{
class Replay : public PurgeRoom
{
protected:
    LogReplay replay{desk};

    int failure_of_replay()
    {
        try {
            replay.Command10_Click();
        } catch (const RuntimeError &error) {
            return error.number();
        }
        return 0;
    }
};

TEST_F(Replay, DeletesFromBothTablesByAddressAndFromTheWorkTableBySubject)
{
    insert_system("ann@example.org", "Hello");
    insert_system("d@isp.example", "Returned mail: user unknown");
    insert_system("friend@example.org", "Hello");
    insert_master({"ann@example.org", "carl@example.org", "friend@example.org"});
    write_last_batch(
        "2026-03-04 05:06:07\r\nann@example.org\r\ncarl@example.org\r\nReturned mail\r\n");
    replay.Command10_Click();
    EXPECT_EQ(column("system", "email"), QStringList{"friend@example.org"});
    EXPECT_EQ(column("master", "email"), QStringList{"friend@example.org"});
}

TEST_F(Replay, AnEntryDeletesEveryAddressThatContainsIt)
{
    insert_master({"joann@example.org", "ANN@EXAMPLE.ORG.uk", "ann@example.com"});
    write_last_batch("t\r\nann@example.org\r\n");
    replay.Command10_Click();
    EXPECT_EQ(column("master", "email"), QStringList{"ann@example.com"});
}

TEST_F(Replay, TheTimeStampDeletesNothingAsARule)
{
    insert_master({"ann@example.org"});
    insert_system("ann@example.org", "Hello");
    write_last_batch("2026-03-04 05:06:07\r\n");
    replay.Command10_Click();
    EXPECT_EQ(column("master", "email").size(), 1);
    EXPECT_EQ(column("system", "email").size(), 1);
}

TEST_F(Replay, TheTimeStampDeletesAMessageWithThatTimeInItsSubject)
{
    insert_system("ann@example.org", "Report of 2026-03-04 05:06:07");
    write_last_batch("2026-03-04 05:06:07\r\n");
    replay.Command10_Click();
    EXPECT_EQ(column("system", "email"), QStringList());
}

TEST_F(Replay, EmptyLinesArePassedOver)
{
    insert_master({"ann@example.org"});
    write_last_batch("\r\n\r\n\r\n");
    replay.Command10_Click();
    EXPECT_EQ(column("master", "email").size(), 1);
}

TEST_F(Replay, ABareAtSignDeletesEveryAddress)
{
    insert_master({"ann@example.org", "no sign"});
    write_last_batch("t\r\n@\r\n");
    replay.Command10_Click();
    EXPECT_EQ(column("master", "email"), QStringList{"no sign"});
}

TEST_F(Replay, WildcardsInALineWork)
{
    insert_master(
        {"user17@example.org", "userx7@example.org", "ann@example.org", "bob@example.com"});
    write_last_batch("t\r\nuser##@\r\nb?b@\r\n[ax]nn\r\n");
    replay.Command10_Click();
    EXPECT_EQ(column("master", "email"), QStringList{"userx7@example.org"});
}

TEST_F(Replay, AQuoteStopsItAfterExactlyTheLinesBefore)
{
    insert_master({"a@x.org", "o'b@x.org", "c@x.org"});
    insert_system("d@isp.example", "a@x.org");
    write_last_batch("t\r\na@x.org\r\no'b@x.org\r\nc@x.org\r\n");
    EXPECT_EQ(failure_of_replay(), error_number::syntax_error);
    EXPECT_EQ(column("master", "email"), (QStringList{"o'b@x.org", "c@x.org"}));
    EXPECT_EQ(column("system", "email"), QStringList());
    EXPECT_EQ(Text27.text(), "o'b@x.org");
    EXPECT_FALSE(please_wait.is_shown());
}

TEST_F(Replay, ABrokenWildcardStopsItTheSameWay)
{
    insert_master({"a@x.org", "c@x.org"});
    write_last_batch("t\r\na@x.org\r\n[b@x.org\r\nc@x.org\r\n");
    EXPECT_EQ(failure_of_replay(), error_number::invalid_pattern);
    EXPECT_EQ(column("master", "email"), QStringList{"c@x.org"});
}

TEST_F(Replay, WhereErrorsAreIgnoredTheLinesAfterABrokenOneHaveTheirEffect)
{
    insert_master({"a@x.org", "o'b@x.org", "c@x.org"});
    write_last_batch("t\r\na@x.org\r\no'b@x.org\r\n[\r\nc@x.org\r\n");
    SkippedSteps skipped;
    replay.Command10_Click(&skipped);
    EXPECT_EQ(column("master", "email"), QStringList{"o'b@x.org"});
    EXPECT_EQ(skipped.count(), 6); // two lines, three statements each
    EXPECT_TRUE(skipped.list().contains("o'b@x.org"));
}

TEST_F(Replay, AMissingTableStopsItAfterTheStatementsBefore)
{
    insert_system("a@x.org", "Hello");
    Data1.set_record_source("email");
    Data1.refresh();
    drop_table("master");
    write_last_batch("a@x.org\r\nb@x.org\r\n");
    EXPECT_EQ(failure_of_replay(), error_number::table_not_found);
    EXPECT_EQ(column("system", "email"), QStringList());
}

TEST_F(Replay, WhereErrorsAreIgnoredTheOtherTableIsStillCleaned)
{
    insert_system("a@x.org", "Hello");
    insert_system("b@x.org", "Hello");
    drop_table("master");
    write_last_batch("a@x.org\r\nb@x.org\r\n");
    SkippedSteps skipped;
    replay.Command10_Click(&skipped);
    EXPECT_EQ(column("system", "email"), QStringList());
}

TEST_F(Replay, WithoutALogItFailsBeforeItShowsAnything)
{
    EXPECT_EQ(failure_of_replay(), error_number::file_not_found);
    EXPECT_FALSE(please_wait.is_shown());
}

TEST_F(Replay, EmptiesItsFieldsAndKeepsTheLastLineInTheLogBox)
{
    for (QLineEdit *field : {&Text23, &Text1, &Text2, &Text7})
        field->setText("x");
    RichTextBox1.set_text("x");
    write_last_batch("t\r\na@x.org\r\nlast line\r\n");
    replay.Command10_Click();
    for (const QLineEdit *field : {&Text23, &Text1, &Text2, &Text7})
        EXPECT_EQ(field->text(), "");
    EXPECT_EQ(RichTextBox1.text(), "");
    EXPECT_EQ(Text27.text(), "last line");
    EXPECT_FALSE(please_wait.is_shown());
}

TEST_F(Replay, TheStatementsAreBuiltByJoining)
{
    write_last_batch("o'b@x.org\r\n");
    try {
        replay.Command10_Click();
        FAIL();
    } catch (const RuntimeError &error) {
        EXPECT_TRUE(
            error.description().contains("delete * from system where email like '*o'b@x.org*' "))
            << error.what();
    }
}

TEST_F(Replay, TellsHowFarItIsAndClearsIt)
{
    write_last_batch("a?\r\nb?\r\n");
    replay.Command10_Click();
    EXPECT_EQ(told, (QStringList{"Log line 1 of 2", "Log line 2 of 2", "clear"}));
}

TEST_F(Replay, TenThousandLinesAreNoWork)
{
    QByteArray batch("t\r\n");
    for (int i = 0; i < 10'000; ++i)
        batch += "user" + QByteArray::number(i) + "@example.org\r\n";
    insert_master({"user9999@example.org", "ann@example.org"});
    write_last_batch(batch);
    replay.Command10_Click();
    EXPECT_EQ(column("master", "email"), QStringList{"ann@example.org"});
}
} // namespace
