#include "mail/parser_try_out.h"
#include "mail/purge_cycles.h"
#include "mail/typed_heading_purge.h"
#include "platform/runtime_error.h"
#include "tests/mail/purge_room.h"

namespace
{
const QString no_heading =
    "notice: No subject heading has been set. Add a subject heading and click the apply button";

class Cycles : public PurgeRoom
{
protected:
    Cycles()
    {
        insert_system("d@isp.example", "Returned mail", "<gone@example.org>");
        insert_system("ann@example.org", "Hello");
        insert_master({"gone@example.org", "kept@example.org"});
    }

    PurgeCycles cycles{desk};
};

struct Button
{
    QString key;
    void (PurgeCycles::*click)() const;
};
class ReturnedMailCycle : public Cycles, public testing::WithParamInterface<Button>
{
};

TEST_P(ReturnedMailCycle, CollectsLogsReplaysShowsAndSaysSo)
{
    settings.write(GetParam().key, "Returned mail");
    Data2.set_record_source("select * from email");
    (cycles.*GetParam().click)();
    EXPECT_EQ(column("master", "email"), QStringList{"kept@example.org"});
    EXPECT_EQ(column("system", "email"), QStringList{"ann@example.org"});
    EXPECT_EQ(
        log_file("system.log"),
        "2026-03-04 05:06:07\r\nd@isp.example\r\ngone@example.org\r\nd@isp.example\r\nReturned "
        "mail\r\n");
    EXPECT_EQ(Data1.record_source().text(), " select * from system");
    EXPECT_EQ(Data2.record_source().text(), "select * from master");
    EXPECT_EQ(Data2.record_set().record_count(), 1);
    EXPECT_EQ(journal, QStringList{"notice: Finished!"});
    EXPECT_FALSE(please_wait.is_shown());
}

TEST_P(ReturnedMailCycle, WithoutItsHeadingItSaysSoAndLeavesPleaseWaitOpen)
{
    for (const QString key : {"Filter", "Filter1", "Filter2"}) {
        if (key != GetParam().key)
            settings.write(key, "Returned mail");
    }
    (cycles.*GetParam().click)();
    EXPECT_EQ(journal, QStringList{no_heading});
    EXPECT_TRUE(please_wait.is_shown());
    EXPECT_EQ(log_file("system.log"), "(none)");
    EXPECT_EQ(column("system", "email").size(), 2);
}

INSTANTIATE_TEST_SUITE_P(Buttons, ReturnedMailCycle,
                         testing::Values(Button{"Filter", &PurgeCycles::cmdFilterit_Click},
                                         Button{"Filter1", &PurgeCycles::Command58_Click},
                                         Button{"Filter2", &PurgeCycles::Command59_Click}));

TEST_F(Cycles, TheSubjectHeadingCycleUncrossesTheLists)
{
    settings.write("Delete", "hello");
    insert_master({"ann@example.org"});
    cycles.cmdDel_Click();
    EXPECT_EQ(column("master", "email"), (QStringList{"gone@example.org", "kept@example.org"}));
    EXPECT_EQ(column("system", "email"), QStringList{"d@isp.example"});
    EXPECT_EQ(Data1.record_source().text(), " select * from system");
    EXPECT_EQ(Data2.record_source().text(), "select * from master");
    EXPECT_EQ(journal, QStringList{"notice: Finished!"});
    EXPECT_FALSE(please_wait.is_shown());
}

TEST_F(Cycles, WithoutTheSubjectHeadingItSaysSoAndLeavesPleaseWaitOpen)
{
    cycles.cmdDel_Click();
    EXPECT_EQ(journal, QStringList{no_heading});
    EXPECT_TRUE(please_wait.is_shown());
}

class TypedHeading : public PurgeRoom
{
protected:
    void insert_email(const QString &email, const QString &subject, const QString &text)
    {
        DataConnection table(engine);
        table.set_database_name("C:\\Ostrix\\Ostrix.mdb");
        table.set_record_source("email");
        table.refresh();
        table.record_set().add_new();
        table.record_set().set_field("email", email);
        table.record_set().set_field("subject", subject);
        table.record_set().set_field("text", text);
        table.record_set().update();
    }

    TypedHeadingPurge purge{desk};
};

TEST_F(TypedHeading, DeletesTheRowsThatTheNoticesName)
{
    insert_email("gone@example.org", "Returned", "it was <x>\r\ngone@example.org");
    insert_email("lost@example.org", "Returned too", "lost@example.org");
    insert_email("lost@example.org", "Hello", {});
    insert_email("kept@example.org", "Hello", {});
    Text2.setText("returned");
    purge.Command27_Click();
    EXPECT_EQ(column("email", "email"), QStringList{"kept@example.org"});
    EXPECT_EQ(Data1.record_source().text(), "select * from email");
    EXPECT_EQ(Data1.record_set().record_count(), 1);
}

TEST_F(TypedHeading, SeveralAddressesMakeOnePattern)
{
    insert_email("a@x.org", "Returned", "a@x.org and b@x.org");
    insert_email("b@x.org", "Hello", {});
    Text2.setText("Returned");
    purge.Command27_Click();
    EXPECT_EQ(Text1.text(), "a@x.org b@x.org");
    EXPECT_EQ(column("email", "email").size(), 2);
}

TEST_F(TypedHeading, EndsWhenAPassDeletesNothing)
{
    insert_email("a@x.org", "Returned", "no address in here");
    insert_email("b@x.org", "Returned", "nobody@x.org");
    Text2.setText("Returned");
    purge.Command27_Click();
    EXPECT_EQ(column("email", "email").size(), 2);
    EXPECT_EQ(Text1.text(), "");
}

TEST_F(TypedHeading, AsksForAHeading)
{
    purge.Command27_Click();
    EXPECT_EQ(journal, QStringList{"notice: Please enter a subject heading in the text box"});
    EXPECT_EQ(Data1.record_source().text(), "system");
}

TEST_F(TypedHeading, AQuoteBreaksTheStatement)
{
    Text2.setText("can't");
    EXPECT_THROW(purge.Command27_Click(), RuntimeError);
}

class TryOut : public PurgeRoom
{
protected:
    TryOut()
    {
        Data2.set_record_source("select * from email2");
        Data2.refresh();
        for (const QString address : {"a@x.org", "b@x.org", "c@x.org"}) {
            Data2.record_set().add_new();
            Data2.record_set().set_field("email", address);
            Data2.record_set().update();
        }
    }

    ParserTryOut try_out{Data2, controls, prompts};
};

TEST_F(TryOut, GrabsThePiecesAroundTheFirstAtSign)
{
    RichTextBox2.set_text("Dear ann@example.org hello");
    try_out.Command31_Click();
    EXPECT_EQ(RichTextBox2.text(), "Dear\r\nann@example.org\r\nhello");
    EXPECT_EQ(Text33.text(), "ann");
    EXPECT_EQ(Text34.text(), "example.org");
}

TEST_F(TryOut, WithoutATextItChangesNothing)
{
    Text33.setText("x");
    try_out.Command31_Click();
    EXPECT_EQ(Text33.text(), "x");
}

TEST_F(TryOut, DeletesTheWordsOneByOne)
{
    Text35.set_text("a@x.org  c@x.org");
    try_out.Command32_Click();
    EXPECT_EQ(journal, (QStringList{"notice: a@x.org", "notice: c@x.org"}));
    EXPECT_EQ(Text31.text(), "c@x.org");
    EXPECT_EQ(column("email2", "email"), QStringList{"b@x.org"});
}

TEST_F(TryOut, AnErrorEndsItQuietly)
{
    Text35.set_text("a@x.org o'b c@x.org");
    try_out.Command32_Click();
    EXPECT_EQ(column("email2", "email"), (QStringList{"b@x.org", "c@x.org"}));
    EXPECT_EQ(journal.last(), "notice: o'b");
}
} // namespace
