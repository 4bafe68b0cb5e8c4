// POP3 against servers that do what a good one does not.
#include "mail/sign_in_refused.h"
#include "tests/mail/servers/stub_pop3.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
using namespace std::chrono_literals;

TEST_F(StubPop3, SaysWhatItHasToSayAndNoMore)
{
    EXPECT_EQ(
        said_to(good),
        (QList<QByteArray>{"[clear] CAPA", "[clear] AUTH PLAIN AGFubgBwZW5jaWw=", "[clear] CAPA",
                           "[clear] LIST", "[clear] UIDL", "[clear] TOP 1 2147483647",
                           "[clear] TOP 2 2147483647", "[clear] QUIT"}));
}

TEST_F(StubPop3, TakesDotsOffAndTheDateOfTheArrival)
{
    const StubServer stub([](StubLine &line) { speak(line, good); });
    Pop3Inbox reader = inbox(stub);
    reader.fetch();
    const MessageFields fields = reader.read(0);
    EXPECT_EQ(fields.text, ".\r\n.dots\r\n-ERR no answer\r\n");
    EXPECT_EQ(fields.date, "2020-07-17 04:44:25");
}

TEST_F(StubPop3, AsksForManyAtATimeWhereThatIsAllowed)
{
    QByteArray many = "+OK\r\n";
    for (int i = 1; i <= 300; ++i)
        many += QByteArray::number(i) + " 60\r\n";
    const StubServer stub([&](StubLine &line) {
        speak(line, {capabilities, "+OK\r\n", "+OK\r\nTOP\r\nPIPELINING\r\n.\r\n", many + ".\r\n",
                     "-ERR no UIDL\r\n"});
        while (!line.hear().isEmpty()) {
        }
    });
    {
        Pop3Inbox reader =
            inbox(stub, LineSecurity::Plain, {SignInKind::Password, "ann", "pencil"}, 150ms);
        reader.fetch();
        EXPECT_EQ(reader.count(), 300);
        EXPECT_THROW(reader.read(0), RuntimeError);
    }
    EXPECT_EQ(heard_by(stub).size(), 5 + 100 + 1);
    EXPECT_EQ(stub.heard()[104], "[clear] TOP 100 2147483647");
    EXPECT_EQ(stub.heard()[105], "[clear] QUIT");
}

TEST_F(StubPop3, AsksAnOldServerByItsOldCommands)
{
    const QList<QByteArray> said =
        said_to({"-ERR what?\r\n", "+OK\r\n", "+OK in\r\n", "-ERR what?\r\n", list,
                 "-ERR what?\r\n", "-ERR what?\r\n", message("1"), message("2"), "+OK\r\n"});
    EXPECT_EQ(said, (QList<QByteArray>{"[clear] CAPA", "[clear] USER ann", "[clear] PASS pencil",
                                       "[clear] CAPA", "[clear] LIST", "[clear] UIDL",
                                       "[clear] TOP 1 2147483647", "[clear] RETR 1",
                                       "[clear] RETR 2", "[clear] QUIT"}));
}

TEST_F(StubPop3, AsksAnOldServerThatKnowsTopByTopAlone)
{
    const QList<QByteArray> said =
        said_to({"-ERR what?\r\n", "+OK\r\n", "+OK in\r\n", "-ERR what?\r\n", list, identifiers,
                 message("1"), message("2"), "+OK\r\n"});
    EXPECT_EQ(said.mid(6), (QList<QByteArray>{"[clear] TOP 1 2147483647",
                                              "[clear] TOP 2 2147483647", "[clear] QUIT"}));
}

TEST_F(StubPop3, TriesRetrOnlyWhereTopIsNotKnownToWork)
{
    const QByteArrayList signed_on = {"-ERR what?\r\n", "+OK\r\n", "+OK in\r\n",
                                      "-ERR what?\r\n", list,      identifiers};
    // The first message works: the second one's refusal is its own.
    const StubServer knows_top([&](StubLine &line) {
        speak(line, signed_on + QByteArrayList{message("1"), "-ERR broken\r\n", "+OK 2 60\r\n",
                                               "+OK bye\r\n"});
    });
    EXPECT_EQ(outcome(knows_top), (QStringList{"message 1", "reading message 2: broken"}));
    EXPECT_FALSE(heard_by(knows_top).join().contains("RETR"));
    // The first message has gone: that says nothing of TOP for the second.
    const StubServer first_gone([&](StubLine &line) {
        speak(line, signed_on + QByteArrayList{"-ERR no\r\n", "-ERR no\r\n", "-ERR no\r\n",
                                               message("2"), "+OK bye\r\n"});
    });
    {
        Pop3Inbox reader = inbox(first_gone);
        reader.fetch();
        EXPECT_THROW(reader.read(0), MessageGone);
        EXPECT_EQ(reader.read(1).subject, "message 2");
    }
    EXPECT_EQ(heard_by(first_gone).mid(6),
              (QList<QByteArray>{"[clear] TOP 1 2147483647", "[clear] RETR 1", "[clear] LIST 1",
                                 "[clear] TOP 2 2147483647", "[clear] QUIT"}));
}

TEST_F(StubPop3, CautionsWhereReadingLeavesATrace)
{
    const QByteArray without_top = "+OK\r\nUIDL\r\nSASL PLAIN\r\n.\r\n";
    const StubServer lacking([&](StubLine &line) {
        speak(line, {without_top, "+OK in\r\n", without_top, list, identifiers, message("1"),
                     message("2"), "+OK bye\r\n"});
    });
    {
        Pop3Inbox reader = inbox(lacking);
        EXPECT_EQ(outcome(reader), all);
        EXPECT_EQ(reader.caution(), "This server lacks TOP: reading marks messages as read for "
                                    "other mail programs, on most servers.");
    }
    EXPECT_EQ(heard_by(lacking)[5], "[clear] RETR 1");
    const StubServer knowing([](StubLine &line) { speak(line, good); });
    Pop3Inbox reader = inbox(knowing);
    EXPECT_EQ(outcome(reader), all);
    EXPECT_EQ(reader.caution(), "");
}

struct Phase
{
    int answers; // that are given
    const char *step;
};

class StubPop3Phases : public StubPop3, public testing::WithParamInterface<Phase>
{
};

TEST_P(StubPop3Phases, TellWhereTheServerClosedTheLine)
{
    const StubServer stub([](StubLine &line) {
        if (GetParam().answers >= 0) {
            speak(line, good.first(GetParam().answers));
            line.hear();
        }
    });
    EXPECT_EQ(outcome(stub),
              QStringList{QStringLiteral("%1: the server closed the line").arg(GetParam().step)});
    EXPECT_EQ(stub.lines(), 2);
}

TEST_P(StubPop3Phases, TellWhereTheServerFellSilent)
{
    const StubServer stub([](StubLine &line) {
        if (GetParam().answers >= 0)
            speak(line, good.first(GetParam().answers));
        line.stall();
    });
    Pop3Inbox reader =
        inbox(stub, LineSecurity::Plain, {SignInKind::Password, "ann", "pencil"}, 150ms);
    EXPECT_EQ(outcome(reader), QStringList{QStringLiteral("%1: the server did not answer within "
                                                          "0.15 seconds")
                                               .arg(GetParam().step)});
    EXPECT_EQ(stub.lines(), 1);
    if (reader.count() > 0) {
        EXPECT_THROW(reader.read(1), RuntimeError);
    }
}

INSTANTIATE_TEST_SUITE_P(All, StubPop3Phases,
                         testing::Values(Phase{-1, "connecting"}, Phase{0, "logging in"},
                                         Phase{1, "logging in"}, Phase{2, "logging in"},
                                         Phase{3, "listing the messages"},
                                         Phase{4, "listing the messages"},
                                         Phase{5, "reading the messages"}));

TEST_F(StubPop3, GoesOnOnAnotherLineWhereTheFirstBroke)
{
    std::atomic<int> lines = 0;
    const StubServer stub([&](StubLine &line) {
        if (++lines == 1) {
            speak(line, good.first(6));
            line.answer(message("2").chopped(20));
        } else { // the numbers are others now
            speak(line, {capabilities, "+OK in\r\n", capabilities, "+OK\r\n7 60\r\n8 60\r\n.\r\n",
                         "+OK\r\n7 second\r\n8 third\r\n.\r\n", message("2")});
        }
    });
    EXPECT_EQ(outcome(stub), all);
    EXPECT_EQ(stub.lines(), 2);
}

TEST_F(StubPop3, DoesNotGoOnWithoutIdentifiers)
{
    QByteArrayList answers = good.first(6);
    answers[4] = "-ERR no UIDL\r\n";
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    EXPECT_EQ(outcome(stub),
              (QStringList{"message 1", "reading the messages: the server closed the line"}));
    EXPECT_EQ(stub.lines(), 1);
}

TEST_F(StubPop3, DoesNotGoOnWithIdentifiersThatTellNothing)
{
    for (const QByteArray &names : {QByteArray("1 first\r\n2 " + QByteArray(71, 'i') + "\r\n"),
                                    QByteArray("1 same\r\n2 same\r\n")}) {
        QByteArrayList answers = good.first(6);
        answers[4] = "+OK\r\n" + names + ".\r\n";
        const StubServer stub([&](StubLine &line) { speak(line, answers); });
        EXPECT_EQ(outcome(stub),
                  (QStringList{"message 1", "reading the messages: the server closed the line"}));
        EXPECT_EQ(stub.lines(), 1);
    }
}

TEST_F(StubPop3, TakesNoOtherMessageForOneWithoutIdentifier)
{
    std::atomic<int> lines = 0;
    const StubServer stub([&](StubLine &line) {
        if (++lines == 1) {
            speak(line, {capabilities, "+OK in\r\n", capabilities,
                         "+OK\r\n1 60\r\n2 60\r\n3 60\r\n.\r\n", identifiers, message("1")});
            line.answer(message("2").chopped(20));
        } else {
            speak(line, {capabilities, "+OK in\r\n", capabilities, "+OK\r\n7 60\r\n8 60\r\n.\r\n",
                         "+OK\r\n7 second\r\n.\r\n", message("2"), message("other")});
        }
    });
    Pop3Inbox reader = inbox(stub);
    reader.fetch();
    EXPECT_EQ(reader.read(0).subject, "message 1");
    EXPECT_EQ(reader.read(1).subject, "message 2");
    EXPECT_THROW(reader.read(2), MessageGone);
}

TEST_F(StubPop3, TakesAListWithoutSense)
{
    QByteArrayList answers = good;
    answers[2] = "+OK\r\nTOP\r\nPIPELINING\r\n.\r\n";
    answers[3] = "+OK\r\n2 9223372036854775807\r\n1 9223372036854775807\r\n2 7\r\n"
                 "0 1\r\nx\r\n.\r\n";
    EXPECT_EQ(outcome_of(answers), all);
}

TEST_F(StubPop3, ATextWithoutEndIsNotReadForever)
{
    const StubServer stub([](StubLine &line) {
        const QByteArray text = QByteArray("without end\r\n").repeated(100);
        while (line.is_open())
            line.say(text);
    });
    MailServer server;
    server.host = "localhost";
    server.port = stub.port();
    server.security = LineSecurity::Plain;
    Pop3Session session(server, {3s, [] {}, {}});
    session.connection().open();
    try {
        session.read_text(1'000, 100'000);
        FAIL() << "came to an end";
    } catch (const RuntimeError &error) {
        EXPECT_TRUE(error.description().endsWith("the server's text does not end")) << error.what();
    }
    EXPECT_LT(session.connection().received(), 3'000'000);
}

TEST_F(StubPop3, TellsRefusalsInTheServersWords)
{
    EXPECT_EQ(outcome_of({capabilities, "-ERR [AUTH] Wrong\x07 one\r\n"}),
              QStringList{"logging in: [AUTH] Wrong one"});
    EXPECT_EQ(outcome_of({capabilities, "-ERR unknown: AUTH PLAIN AGFubgBwZW5jaWw=\r\n"}),
              QStringList{"logging in: its answer repeats a secret and is not shown"});
    EXPECT_EQ(outcome_of({"-ERR\r\n", "+OK\r\n", "-ERR no mailbox for pencil\r\n"}),
              QStringList{"logging in: its answer repeats a secret and is not shown"});
    EXPECT_EQ(outcome_of({capabilities, "+OK\r\n", capabilities, "-ERR [SYS/TEMP] disk\r\n"}),
              QStringList{"listing the messages: [SYS/TEMP] disk"});
    const StubServer busy([](StubLine &line) { line.say("-ERR [IN-USE] busy\r\n"); });
    EXPECT_EQ(outcome(busy), QStringList{"connecting: [IN-USE] busy"});
    const StubServer other([](StubLine &line) { line.say("220 smtp.example.org\r\n"); });
    EXPECT_EQ(outcome(other), QStringList{"connecting: this is no POP3 server"});
}

TEST_F(StubPop3, TakesLeaveInTimeWhateverTheServerDoes)
{
    EXPECT_LT(longest_leave("+OK hello\r\n", good.first(7), all, 300ms), 3'500);
    // A person does not wait for a leave as long as for mail; a loaded machine's seconds.
    EXPECT_LT(longest_leave("+OK hello\r\n", good.first(7), all, 60s), 20'000);
}

TEST_F(StubPop3, TellsAMessageThatHasGoneFromOneThatIsRefused)
{
    QByteArrayList answers = good.first(5);
    answers += {"-ERR [SYS/TEMP] cannot read it\r\n", "+OK 1 60\r\n", "-ERR no such message\r\n",
                "-ERR no such message\r\n"};
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    Pop3Inbox reader = inbox(stub);
    reader.fetch();
    try {
        reader.read(0);
        FAIL() << "read what the server refused";
    } catch (const MessageRefused &error) {
        EXPECT_TRUE(error.description().endsWith("), reading message 1: [SYS/TEMP] cannot read it"))
            << error.what();
    }
    EXPECT_THROW(reader.read(1), MessageGone);
}

TEST_F(StubPop3, ALineOfAnyLengthIsRead)
{
    const QByteArray text(300'000, 'x');
    QByteArrayList answers = good;
    answers[5] = "+OK\r\nSubject: long\r\n\r\n" + text + "\r\n.\r\n";
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    Pop3Inbox reader = inbox(stub);
    reader.fetch();
    EXPECT_EQ(reader.read(0).text, text + "\r\n");
    EXPECT_EQ(reader.read(1).subject, "message 2");
}
} // namespace
