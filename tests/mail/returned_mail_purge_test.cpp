#include "mail/returned_mail_purge.h"
#include "mail/subject_purge.h"
#include "platform/runtime_error.h"
#include "platform/twips.h"
#include "tests/mail/purge_room.h"

namespace
{
class ReturnedMail : public PurgeRoom
{
protected:
    ReturnedMailPurge purge{desk};
};

TEST_F(ReturnedMail, ListsSenderAddressesSenderAgainAndAtTheEndTheHeading)
{
    insert_system("daemon@isp.example", "Returned mail: see text",
                  "No such user: <ann@example.org>");
    purge.collect("Returned mail");
    EXPECT_EQ(Text27.text(),
              "\r\ndaemon@isp.example\r\nann@example.org\r\ndaemon@isp.example\r\nReturned mail");
}

TEST_F(ReturnedMail, ListsSeveralAddressesTwice)
{
    insert_system("d@isp.example", "Returned mail", "<ann@example.org>\r\n<bob@example.org>");
    purge.collect("returned MAIL"); // letter case does not matter
    EXPECT_EQ(Text27.text(), "\r\nd@isp.example"
                             "\r\nann@example.org\r\nbob@example.org"
                             "\r\nann@example.org\r\nbob@example.org"
                             "\r\nd@isp.example\r\nreturned MAIL");
    EXPECT_EQ(RichTextBox1.text(), "ann@example.org\r\nbob@example.org");
    EXPECT_EQ(RichTextBox2.text(), "ann@example.org bob@example.org");
    EXPECT_EQ(Text35.text(), ",ann@example.org,bob@example.org");
    EXPECT_EQ(Text31.text(), "bob@example.org");
}

TEST_F(ReturnedMail, WalksEveryNoticeInOrder)
{
    insert_system("one@isp.example", "Failure", "ann@example.org");
    insert_system("friend@example.org", "Hello", "me@example.org");
    insert_system("two@isp.example", "Mail failure notice", "bob@example.org");
    purge.collect("failure");
    EXPECT_EQ(Text27.text(),
              "\r\none@isp.example\r\nann@example.org\r\none@isp.example"
              "\r\ntwo@isp.example\r\nbob@example.org\r\ntwo@isp.example\r\nfailure");
}

TEST_F(ReturnedMail, ANoticeWithoutSenderLeavesAnEmptyLineAndNoSecondOne)
{
    insert_system("", "Failure", "no address here");
    purge.collect("Failure");
    EXPECT_EQ(Text27.text(), "\r\n\r\nFailure");
}

TEST_F(ReturnedMail, WithoutAMatchOnlyTheHeadingIsListed)
{
    insert_system("friend@example.org", "Hello");
    purge.collect("Returned mail");
    EXPECT_EQ(Text27.text(), "\r\nReturned mail");
}

TEST_F(ReturnedMail, BlanksAroundTheHeadingAreRemoved)
{
    insert_system("d@isp.example", "Returned mail");
    purge.collect("  Returned mail ");
    EXPECT_EQ(Text1.text(), "Returned mail");
    EXPECT_EQ(Text27.text(), "\r\nd@isp.example\r\nd@isp.example\r\nReturned mail");
}

TEST_F(ReturnedMail, AHeadingOfBlanksMatchesEveryMessageAndIsNotListed)
{
    insert_system("ann@example.org", "Hello");
    purge.collect("  ");
    EXPECT_EQ(Text27.text(), "\r\nann@example.org\r\nann@example.org");
}

TEST_F(ReturnedMail, AnEmptyHeadingOnlyEmptiesTheLogBox)
{
    Text27.set_text("old");
    Text1.setText("kept");
    Data1.set_record_source("select * from email");
    purge.collect("");
    EXPECT_EQ(Text27.text(), "");
    EXPECT_EQ(Text1.text(), "kept");
    EXPECT_EQ(Data1.record_source().text(), "select * from email");
}

TEST_F(ReturnedMail, AFormerListIsReplaced)
{
    Text27.set_text("\r\nold@example.org");
    purge.collect("Returned mail");
    EXPECT_EQ(Text27.text(), "\r\nReturned mail");
}

TEST_F(ReturnedMail, ItDeletesNothing)
{
    insert_system("d@isp.example", "Returned mail", "ann@example.org");
    insert_master({"ann@example.org"});
    purge.collect("Returned mail");
    EXPECT_EQ(column("system", "email"), QStringList{"d@isp.example"});
    EXPECT_EQ(column("master", "email"), QStringList{"ann@example.org"});
}

TEST_F(ReturnedMail, BothListsShowTheirWholeTableAfterwards)
{
    insert_system("d@isp.example", "Returned mail");
    insert_system("friend@example.org", "Hello");
    Data2.set_record_source("select * from email");
    purge.collect("Returned mail");
    EXPECT_EQ(Data1.record_source().text(), "select * from system");
    EXPECT_EQ(Data1.record_set().record_count(), 2);
    EXPECT_EQ(Data2.record_source().text(), "select * from master");
}

TEST_F(ReturnedMail, AHeadingWithAQuoteBreaksTheStatement)
{
    try {
        purge.collect("can't deliver");
        FAIL();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), error_number::syntax_error);
        EXPECT_TRUE(error.description().contains("like '*can't deliver*' "));
    }
    EXPECT_EQ(Text27.text(), "");
}

TEST_F(ReturnedMail, MoreNoticesThanA16BitNumberHoldsAreAnOverflow)
{
    Data1.execute("insert into system(email,subject) select a.email, 'Failure' from master a");
    insert_master({"ann@example.org"});
    Data1.execute("insert into system(email,subject) select email, 'Failure' from master");
    for (int doubled = 1; doubled < 32768; doubled *= 2)
        Data1.execute("insert into system(email,subject) select email, subject from system");
    try {
        purge.collect("Failure");
        FAIL();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), error_number::overflow);
    }
}

TEST_F(ReturnedMail, Command22ReadsTheFirstHeading)
{
    insert_system("d@isp.example", "Returned mail");
    settings.write("Filter", "Returned");
    settings.write("Filter1", "other");
    purge.Command22_Click();
    EXPECT_EQ(Text27.text(), "\r\nd@isp.example\r\nd@isp.example\r\nReturned");
}

class SubjectHeading : public PurgeRoom
{
protected:
    SubjectPurge purge{desk};
};

TEST_F(SubjectHeading, ListsEachSenderOnce)
{
    insert_system("ann@example.org", "please REMOVE me");
    insert_system("bob@example.org", "Hello");
    insert_system("ANN@example.org", "Remove");
    insert_system("carl@example.org", "remove");
    settings.write("Delete", " remove ");
    purge.Command23_Click();
    EXPECT_EQ(Text27.text(), "\r\nann@example.org\r\ncarl@example.org");
}

TEST_F(SubjectHeading, OneMatchListsThatSender)
{
    insert_system("ann@example.org", "remove");
    settings.write("Delete", "remove");
    purge.Command23_Click();
    EXPECT_EQ(Text27.text(), "\r\nann@example.org");
}

TEST_F(SubjectHeading, LeavesTheListsCrossed)
{
    insert_system("ann@example.org", "remove");
    insert_master({"m1@example.org", "m2@example.org"});
    settings.write("Delete", "remove");
    purge.Command23_Click();
    EXPECT_EQ(Data1.record_source().text(), "select * from master");
    EXPECT_EQ(Data1.record_set().record_count(), 2);
    EXPECT_EQ(Data2.record_source().text(), "select * from system ");
    EXPECT_EQ(Data2.record_set().record_count(), 1);
}

TEST_F(SubjectHeading, WithoutAMatchTheListsStay)
{
    insert_system("ann@example.org", "Hello");
    settings.write("Delete", "remove");
    purge.Command23_Click();
    EXPECT_EQ(Text27.text(), "");
    EXPECT_EQ(Data1.record_source().text(),
              "select distinct email from system where subject like '*remove*' ");
    EXPECT_EQ(Data2.record_source().text(), "master");
}

TEST_F(SubjectHeading, WithoutAHeadingOnlyTheLogBoxIsEmptied)
{
    Text27.set_text("old");
    purge.Command23_Click();
    EXPECT_EQ(Text27.text(), "");
    EXPECT_EQ(Data1.record_source().text(), "system");
}
} // namespace
