// IMAP against servers that do what a good one does not.
#include "mail/sign_in_refused.h"
#include "tests/mail/servers/stub_imap.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
using namespace std::chrono_literals;

TEST_F(StubImap, SaysWhatItHasToSayAndNoMore)
{
    StubServer stub([](StubLine &line) { speak(line, good); });
    {
        ImapInbox reader = inbox(stub);
        EXPECT_EQ(outcome(reader), all);
    }
    EXPECT_EQ(heard_by(stub),
              (QList<QByteArray>{
                  "[clear] o1 CAPABILITY",
                  "[clear] o2 AUTHENTICATE PLAIN AGFubgBwZW5jaWw=", "[clear] o3 EXAMINE \"INBOX\"",
                  "[clear] o4 UID FETCH 1:* (UID FLAGS RFC822.SIZE INTERNALDATE)",
                  "[clear] o5 UID FETCH 5:6,9 (UID BODY.PEEK[]<0.32768>)", "[clear] o6 LOGOUT"}));
}

TEST_F(StubImap, TakesADateFromTheServerAndTextThatLooksLikeAnAnswer)
{
    const StubServer stub([](StubLine &line) { speak(line, good); });
    ImapInbox reader = inbox(stub);
    reader.fetch();
    const MessageFields fields = reader.read(0);
    EXPECT_EQ(fields.date, "2020-07-17 04:44:25");
    EXPECT_EQ(fields.text, "o9 OK text\r\n");
}

struct Phase
{
    int answers; // that are given
    const char *step;
};

class StubImapPhases : public StubImap, public testing::WithParamInterface<Phase>
{
};

TEST_P(StubImapPhases, TellWhereTheServerClosedTheLine)
{
    std::atomic<int> lines = 0;
    const StubServer stub([&](StubLine &line) {
        const int most = ++lines == 1 ? 4 : 3; // the list is asked for once
        if (GetParam().answers >= 0) {
            speak(line, good.first(std::min(most, GetParam().answers)));
            line.hear();
        }
    });
    EXPECT_EQ(outcome(stub),
              QStringList{QStringLiteral("%1: the server closed the line").arg(GetParam().step)});
    EXPECT_EQ(stub.lines(), 2); // tried once more
}

TEST_P(StubImapPhases, TellWhereTheServerFellSilent)
{
    const StubServer stub([](StubLine &line) {
        if (GetParam().answers >= 0)
            speak(line, good.first(GetParam().answers));
        line.stall();
    });
    ImapInbox reader =
        inbox(stub, LineSecurity::Plain, {SignInKind::Password, "ann", "pencil"}, 150ms);
    EXPECT_EQ(outcome(reader), QStringList{QStringLiteral("%1: the server did not answer within "
                                                          "0.15 seconds")
                                               .arg(GetParam().step)});
    EXPECT_EQ(stub.lines(), 1);
    if (reader.count() > 0) {
        EXPECT_THROW(reader.read(1), RuntimeError); // at once, without another wait
    }
}

INSTANTIATE_TEST_SUITE_P(All, StubImapPhases,
                         testing::Values(Phase{-1, "connecting"}, Phase{0, "logging in"},
                                         Phase{1, "logging in"},
                                         Phase{2, "opening the mailbox 'INBOX'"},
                                         Phase{3, "listing the messages"},
                                         Phase{4, "reading the messages"}));

TEST_F(StubImap, GoesOnOnAnotherLineWhereTheFirstBroke)
{
    std::atomic<int> lines = 0;
    const StubServer stub([&](StubLine &line) {
        if (++lines == 1) {
            speak(line, good.first(4));
            line.answer(message("5") + message("6").chopped(9)); // in the middle of the second
        } else {
            speak(line, {capabilities, signed_on, opened(), messages()});
        }
    });
    EXPECT_EQ(outcome(stub), all);
    EXPECT_EQ(stub.lines(), 2);
}

TEST_F(StubImap, DoesNotGoOnWhenTheMessagesWereNumberedAnew)
{
    std::atomic<int> lines = 0;
    const StubServer stub([&](StubLine &line) {
        speak(line,
              ++lines == 1 ? good.first(4) : QByteArrayList{capabilities, signed_on, opened(8)});
        line.hear();
    });
    EXPECT_EQ(outcome(stub), QStringList{"going on with the messages: the server has numbered the "
                                         "messages of 'INBOX' anew"});
}

TEST_F(StubImap, TellsTheServersGoodBye)
{
    EXPECT_EQ(outcome_of({capabilities, "* BYE Too busy today\r\n"}),
              QStringList{"logging in: Too busy today"});
    const StubServer stub([](StubLine &line) { line.say("* BYE Go away\r\n"); });
    EXPECT_EQ(outcome(stub), QStringList{"connecting: Go away"});
}

TEST_F(StubImap, TellsRefusalsInTheServersWords)
{
    EXPECT_EQ(outcome_of({capabilities, "TAG NO [AUTHENTICATIONFAILED] Wrong\x07 one\r\n"}),
              QStringList{"logging in: [AUTHENTICATIONFAILED] Wrong one"});
    EXPECT_EQ(
        outcome_of({capabilities, "TAG BAD unknown: AUTHENTICATE PLAIN AGFubgBwZW5jaWw=\r\n"}),
        QStringList{"logging in: its answer repeats a secret and is not shown"});
    EXPECT_EQ(outcome_of({capabilities, signed_on, "TAG NO No such mailbox\r\n"}),
              QStringList{"opening the mailbox 'INBOX': No such mailbox"});
    const StubServer stub([](StubLine &line) { line.say("220 smtp.example.org\r\n"); });
    EXPECT_EQ(outcome(stub), QStringList{"connecting: this is no IMAP server"});
}

TEST_F(StubImap, TakesLeaveInTimeWhateverTheServerDoes)
{
    EXPECT_LT(longest_leave("* OK hello\r\n", good.first(5), all, 300ms), 3'500);
    // A person does not wait for a leave as long as for mail; a loaded machine's seconds.
    EXPECT_LT(longest_leave("* OK hello\r\n", good.first(5), all, 60s), 20'000);
}

TEST_F(StubImap, TakesAnswersInAnyOrderAndPassesOverTheRest)
{
    QByteArrayList answers = good;
    answers[4] =
        "* 4 EXISTS\r\n* 2 EXPUNGE\r\n* 1 FETCH (UID 6 FLAGS (\\Seen))\r\n* SEARCH 1 2\r\n" +
        message("9") + message("77") + message("6") + message("5") + "TAG OK fetched\r\n";
    EXPECT_EQ(outcome_of(answers), all);
}

TEST_F(StubImap, KeepsNothingThatItDidNotAskFor)
{
    QByteArrayList answers = good;
    answers[4].replace("text\r\n)", "text\r\n BODY[2] {11}\r\nSubject: no BODY[TEXT] \"x\")");
    EXPECT_EQ(outcome_of(answers), all);
    answers[4] = "* 1 FETCH (UID 5 BODY[HEADER] \"Subject: no\")\r\nTAG OK x\r\n";
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    ImapInbox reader = inbox(stub);
    reader.fetch();
    EXPECT_THROW(reader.read(0), MessageGone);
}

TEST_F(StubImap, KeepsNoMoreThanItAskedFor)
{
    // The long line ends beyond what is asked for; no half line is shown.
    const auto large = [](int size) {
        const QByteArray text =
            "Subject: large\r\n\r\nshort\r\n" + QByteArray(size, 'x') + "\r\nend\r\n";
        return QByteArray("* 1 FETCH (UID 5 BODY[]<0> {") + QByteArray::number(text.size()) +
               "}\r\n" + text + ")\r\nTAG OK fetched\r\n";
    };
    QByteArrayList answers = good;
    answers[4] = large(50'000);
    answers[5] = large(1'500'000);
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    ImapInbox reader = inbox(stub);
    reader.fetch();
    const MessageFields fields = reader.read(0);
    EXPECT_EQ(fields.subject, "large");
    EXPECT_TRUE(fields.text.startsWith("short\r\n"));
    EXPECT_EQ(fields.text.count(u'x'), 0);
}

TEST_F(StubImap, RefusesAnswersToWhatItDidNotAsk)
{
    QByteArrayList answers = good;
    answers[4] = "o99 OK fetched\r\n";
    EXPECT_EQ(outcome_of(answers),
              QStringList{"reading the messages: the server answers what it was not asked"});
}

TEST_F(StubImap, AMessageThatTheServerCannotGiveIsToldAloneAndTheOthersAreRead)
{
    for (const QByteArray refusal :
         {"TAG NO [SERVERBUG] cannot read 6\r\n", "TAG BAD [SERVERBUG] cannot read 6\r\n"}) {
        QByteArrayList answers = good;
        answers[4] = message("5") + refusal;
        answers[5] = refusal;
        answers += message("9") + "TAG OK fetched\r\n";
        const StubServer stub([&](StubLine &line) { speak(line, answers); });
        ImapInbox reader = inbox(stub);
        reader.fetch();
        EXPECT_EQ(reader.read(0).subject, "message 5");
        try {
            reader.read(1);
            FAIL() << "read what the server refused";
        } catch (const MessageRefused &error) {
            EXPECT_TRUE(
                error.description().endsWith("), reading message 2: [SERVERBUG] cannot read 6"))
                << error.what();
        }
        EXPECT_EQ(reader.read(2).subject, "message 9");
    }
}

TEST_F(StubImap, AnAnswerThatCannotBeReadIsAskedForAsTheBeginningOfTheMessage)
{
    const QByteArray text = "Subject: odd\r\n\r\nits text\r\n";
    const QByteArray whole = " BODY[]<0> {" + QByteArray::number(text.size()) + "}\r\n" + text;
    QByteArrayList answers = good;
    answers[3] = listed(50'000);
    answers[4] = "* 1 FETCH (UID 5 BODYSTRUCTURE " + QByteArray(120, '(') + QByteArray(120, ')') +
                 " BODY[HEADER.FIELDS (X)]<0> {15}\r\nSubject: deep\r\n)\r\n"
                 "* 1 FETCH (UID 6 BODYSTRUCTURE ((\r\n"
                 "* 1 FETCH (UID 9 BODYSTRUCTURE (\"text\" \"plain\" NIL NIL NIL \"7bit\" 9 1) "
                 "BODY[HEADER.FIELDS (X)] \"\")\r\n"
                 "TAG OK x\r\n";
    // The last one's part makes no sense, in its turn.
    answers[5] = "* 1 FETCH (UID 9 BODY[1] \"never ended)\r\nTAG OK x\r\n";
    answers.insert(5, "* 1 FETCH (UID 5" + whole + ")\r\n* 1 FETCH (UID 6" + whole +
                          ")\r\nTAG OK x\r\n");
    answers += "* 1 FETCH (UID 9" + whole + ")\r\nTAG OK x\r\n";
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    EXPECT_EQ(outcome(stub), (QStringList{"odd", "odd", "odd"}));
}

TEST_F(StubImap, AStructureThatTheServerRefusesIsReadFromTheBeginningOfTheMessage)
{
    const QByteArray text = "Subject: odd\r\n\r\nits text\r\n";
    const QByteArray whole = "* 1 FETCH (UID 5 BODY[]<0> {" + QByteArray::number(text.size()) +
                             "}\r\n" + text + ")\r\nTAG OK x\r\n";
    QByteArrayList answers = good;
    answers[3] = listed(50'000);
    answers[4] = "TAG BAD too long\r\n"; // for all three
    answers[5] = "TAG BAD too long\r\n";
    answers += {whole, "TAG NO no structure\r\n", "TAG NO not that either\r\n"};
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    ImapInbox reader = inbox(stub);
    reader.fetch();
    EXPECT_EQ(reader.read(0).subject, "odd");
    EXPECT_THROW(reader.read(1), MessageRefused);
}

TEST_F(StubImap, AMessageThatWasExpungedMeanwhileHasGone)
{
    QByteArrayList answers = good;
    answers[4] = message("5") + message("9") + "TAG NO [EXPUNGEISSUED] Some have gone\r\n";
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    ImapInbox reader = inbox(stub);
    reader.fetch();
    EXPECT_EQ(reader.read(0).subject, "message 5");
    EXPECT_THROW(reader.read(1), MessageGone);
    EXPECT_EQ(reader.read(2).subject, "message 9");
}

TEST_F(StubImap, AStructureThatMakesNoSenseIsReadFromTheBeginningOfTheMessage)
{
    const QByteArray text = "Subject: odd\r\n\r\nits text\r\n";
    const QByteArray whole = "BODY[]<0> {" + QByteArray::number(text.size()) + "}\r\n" + text;
    QByteArrayList answers = good;
    answers[3] = listed(50'000);
    answers[4] =
        "* 1 FETCH (UID 5 BODYSTRUCTURE ((()))) \r\n* 2 FETCH (UID 6 BODYSTRUCTURE NIL)\r\n"
        "* 3 FETCH (UID 9 BODYSTRUCTURE (\"text\" \"plain\" NIL NIL NIL \"7bit\" 9 1) "
        "BODY[HEADER.FIELDS (X)] \"\")\r\nTAG OK x\r\n";
    answers[5] = "* 3 FETCH (UID 9 BODY[1] {3}\r\nhi!)\r\nTAG OK x\r\n";
    answers.insert(5, "* 1 FETCH (UID 5 " + whole + ")\r\n* 2 FETCH (UID 6 " + whole +
                          ")\r\nTAG OK x\r\n");
    StubServer stub([&](StubLine &line) { speak(line, answers); });
    ImapInbox reader = inbox(stub);
    reader.fetch();
    EXPECT_EQ(reader.read(0).text, "its text\r\n");
    EXPECT_EQ(reader.read(1).subject, "odd");
    EXPECT_EQ(reader.read(2).text, "hi!");
}

TEST_F(StubImap, KeepsFewBatchesOnTheWay)
{
    // 3,000 messages are listed; each command that fetches is noted and never answered.
    const StubServer stub([](StubLine &line) {
        QByteArray list;
        for (int uid = 1; uid <= 3'000; ++uid)
            list += "* 1 FETCH (UID " + QByteArray::number(uid) + " RFC822.SIZE 60)\r\n";
        speak(line, {capabilities, signed_on, opened(), list + "TAG OK listed\r\n"});
        while (!line.hear().isEmpty()) {
        }
    });
    {
        ImapInbox reader =
            inbox(stub, LineSecurity::Plain, {SignInKind::Password, "ann", "pencil"}, 150ms);
        reader.fetch();
        EXPECT_EQ(reader.count(), 3'000);
        EXPECT_THROW(reader.read(0), RuntimeError);
    }
    QList<QByteArray> expected;
    for (int batch = 0; batch < 8; ++batch)
        expected += "[clear] o" + QByteArray::number(5 + batch) + " UID FETCH " +
                    QByteArray::number(250 * batch + 1) + ':' +
                    QByteArray::number(250 * batch + 250) + " (UID BODY.PEEK[]<0.32768>)";
    expected += "[clear] o13 LOGOUT";
    EXPECT_EQ(heard_by(stub).mid(4), expected);
}
TEST_F(StubImap, HoldsFewLongTextsAtATime)
{
    const QByteArray text(3'000'000, 'x');
    const auto body = [&text](const char *uid) {
        return QByteArray("* 1 FETCH (UID ") + uid + " BODY[1] {3000000}\r\n" + text +
               ")\r\nTAG OK x\r\n";
    };
    const QByteArray structure =
        " BODYSTRUCTURE (\"text\" \"plain\" NIL NIL NIL \"7bit\" 3000000 1) "
        "BODY[HEADER.FIELDS (X)]<0> {14}\r\nSubject: big\r\n)\r\n";
    QByteArrayList answers = good.first(3);
    answers += listed(3'000'100);
    answers += "* 1 FETCH (UID 5" + structure + "* 1 FETCH (UID 6" + structure +
               "* 1 FETCH (UID 9" + structure + "TAG OK x\r\n";
    answers += {body("5"), body("6"), "TAG OK bye\r\n"};
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    {
        ImapInbox reader = inbox(stub);
        reader.fetch();
        EXPECT_EQ(reader.read(0).subject, "big");
        EXPECT_EQ(reader.read(1).subject, "big");
    }
    EXPECT_EQ(heard_by(stub).mid(5), (QList<QByteArray>{"[clear] o6 UID FETCH 5 (UID BODY.PEEK[1])",
                                                        "[clear] o7 UID FETCH 6 (UID BODY.PEEK[1])",
                                                        "[clear] o8 LOGOUT"}));
}
} // namespace
