// What becomes of a message when its server refuses, breaks off or falls silent.
#include "mail/smtp_delivery.h"
#include "tests/mail/servers/certificates.h"
#include "tests/mail/servers/smtp_stub.h"
#include "tests/mail/smtp_room.h"

#include <QElapsedTimer>

namespace
{
using namespace std::chrono_literals;

// What a server does at one point of its talk, and what comes of it for two recipients.
struct Fault
{
    QByteArray at; // the beginning of the command
    QByteArray answer;
    QString failure; // thrown, without the port; empty: these fates
    Fate fate = Fate::Accepted;
    int times_sent = 0; // how often the content went out
};

class SmtpFault : public Smtp, public testing::WithParamInterface<Fault>
{
};

TEST_P(SmtpFault, IsTold)
{
    const Fault &fault = GetParam();
    patience = fault.answer == "stall" ? 300ms : 5s;
    StubServer server(by_the_book([&fault](const QByteArray &command) {
        return command.startsWith(fault.at) ? fault.answer : QByteArray();
    }));
    QElapsedTimer time;
    time.start();
    if (!fault.failure.isEmpty()) {
        EXPECT_EQ(failure(at(server.port()), {"a@x.example", "b@x.example"}),
                  "The mail server 'localhost' (port PORT), " + fault.failure);
    } else {
        for (const RecipientFate &each : send(at(server.port()), {"a@x.example", "b@x.example"})) {
            EXPECT_EQ(each.fate, fault.fate) << each.words.toStdString();
            EXPECT_EQ(each.words.isEmpty(), fault.fate == Fate::Accepted);
        }
    }
    EXPECT_LT(time.elapsed(), 4'900); // no wait that nobody asked for
    EXPECT_EQ(server.lines(), 1);     // nothing is tried again in a new line
    if (fault.at != "(greeting)") {
        EXPECT_EQ(count_of(server, "end"), fault.times_sent);
    }
}

const QString no_answer = "the server did not answer within 0.3 seconds";
const QString closed = "the server closed the line";

INSTANTIATE_TEST_SUITE_P(Cut, SmtpFault,
                         testing::Values(Fault{"(greeting)", "close",
                                               "greeting the server: " + closed},
                                         Fault{"EHLO", "close", "greeting the server: " + closed},
                                         Fault{"MAIL", "close", "naming the recipients: " + closed},
                                         Fault{"RCPT", "close", "naming the recipients: " + closed},
                                         Fault{"DATA", "close", "sending the message: " + closed},
                                         Fault{".", "close", "", Fate::Unknown, 1}));

INSTANTIATE_TEST_SUITE_P(
    Silent, SmtpFault,
    testing::Values(Fault{"(greeting)", "stall", "greeting the server: " + no_answer},
                    Fault{"EHLO", "stall", "greeting the server: " + no_answer},
                    Fault{"RCPT", "stall", "naming the recipients: " + no_answer},
                    Fault{"QUIT", "stall", "", Fate::Accepted, 1},
                    Fault{"MAIL", "stall", "naming the recipients: " + no_answer},
                    Fault{"DATA", "stall", "sending the message: " + no_answer},
                    Fault{".", "stall", "", Fate::Unknown, 1}));

INSTANTIATE_TEST_SUITE_P(
    Refused, SmtpFault,
    testing::Values(Fault{"(greeting)", "554 go away\r\n", "greeting the server: 554 go away"},
                    Fault{"EHLO", "500 what?\r\n", "greeting the server: 500 what?"},
                    Fault{"MAIL", "550 not you\r\n", "", Fate::Refused},
                    Fault{"MAIL", "421 busy\r\n", "naming the recipients: 421 busy"},
                    Fault{"DATA", "554 nobody\r\n", "", Fate::Refused},
                    Fault{"DATA", "250 ok\r\n", "sending the message: 250 ok"}, // nothing went out
                    Fault{"DATA", "334 what?\r\n", "", Fate::Refused},
                    Fault{".", "552 full\r\n", "", Fate::Refused, 1},
                    Fault{".", "451 later\r\n", "", Fate::NotNow, 2}, // offered once more
                    Fault{".", "421 closing\r\n", "", Fate::NotNow, 1}));

INSTANTIATE_TEST_SUITE_P(
    Nonsense, SmtpFault,
    testing::Values(
        Fault{"EHLO", "hello\x1b[2J\r\n",
              "greeting the server: what the server says is no answer: hello\\u001B[2J"},
        Fault{"EHLO", QByteArray("250-again\r\n").repeated(300),
              "greeting the server: the server's answer does not end"}));

TEST_F(Smtp, TellsWhereTheSignOnWasCutOrStalled)
{
    struct Place
    {
        LineSecurity security;
        QByteArray at, answer_before; // where, and what is said to STARTTLS or AUTH
        const char *step;
    };
    const Certificates certificates;
    trusted = certificates.authority();
    for (const Place &place :
         {Place{LineSecurity::StartTls, "STARTTLS", {}, "encrypting the line: "},
          Place{LineSecurity::StartTls, {}, "220 go\r\n", "encrypting the line: "},
          Place{LineSecurity::Plain, "AUTH", {}, "signing on: "},
          Place{LineSecurity::Plain, "YW5u", "334 VXNlcm5hbWU6\r\n", "signing on: "}}) {
        for (const char *what : {"close", "stall"}) {
            SCOPED_TRACE(place.at.toStdString() + what);
            patience = what == std::string_view("stall") ? 300ms : 5s;
            const StubServer server(by_the_book(
                [&](const QByteArray &command) -> QByteArray {
                    const bool is_before =
                        command.startsWith("STARTTLS") || command.startsWith("AUTH");
                    if (is_before && !place.answer_before.isEmpty())
                        return place.answer_before;
                    const bool is_hello = command.startsWith("EHLO") || command == "(greeting)";
                    return is_hello ? QByteArray() : QByteArray(what);
                },
                "250-STARTTLS\r\n250-AUTH LOGIN\r\n"));
            const QString told = failure(at(server.port(), place.security, SignInKind::Password));
            EXPECT_EQ(told, "The mail server 'localhost' (port PORT), " + QString(place.step) +
                                (patience == 5s ? closed : no_answer));
        }
    }
}

TEST_F(Smtp, GoesOnInANewLineWhereTheServerBrokeOff)
{
    // Each line takes one message, as some servers do.
    const StubServer server([](StubLine &line) {
        bool had_one = false;
        serve(
            line,
            [&had_one](const QByteArray &command) -> QByteArray {
                if (command == ".")
                    had_one = true;
                return had_one && command.startsWith("MAIL") ? "421 one is enough\r\n"
                                                             : QByteArray();
            },
            "250-PIPELINING\r\n");
    });
    const auto fates = send(at(server.port()), many(120));
    EXPECT_TRUE(std::ranges::all_of(
        fates, [](const RecipientFate &each) { return each.fate == Fate::Accepted; }));
    EXPECT_EQ(server.lines(), 3);
    EXPECT_EQ(count_of(server, "end"), 3);
}

TEST_F(Smtp, TellsWhoWasNotReachedWhenTheServerStaysAway)
{
    int lines = 0;
    const StubServer server([&lines](StubLine &line) {
        const bool is_first = ++lines == 1;
        int messages = 0;
        serve(
            line,
            [&](const QByteArray &command) -> QByteArray {
                if (!is_first)
                    return command.startsWith("EHLO") ? "close" : QByteArray();
                messages += command == "." ? 1 : 0;
                return messages == 2 && command.startsWith("MAIL") ? "421 enough\r\n"
                                                                   : QByteArray();
            },
            "250-PIPELINING\r\n");
    });
    const auto fates = send(at(server.port()), many(200));
    for (std::size_t i = 0; i < fates.size(); ++i) {
        EXPECT_EQ(fates[i].fate, i < 100 ? Fate::Accepted : Fate::NotTried) << i;
        EXPECT_EQ(fates[i].words.isEmpty(), i < 100);
    }
    EXPECT_EQ(server.lines(), 2);
    EXPECT_EQ(count_of(server, "end"), 2);
}

// A server that treats one message so would treat all others so, at the cost of a wait each.
TEST_F(Smtp, SendsNothingMoreOnceNobodyKnowsWhatBecameOfAMessage)
{
    const StubServer server([](StubLine &line) {
        int messages = 0;
        serve(
            line,
            [&](const QByteArray &command) -> QByteArray {
                messages += command == "." ? 1 : 0;
                return command == "." && messages == 2 ? "close" : QByteArray();
            },
            "250-PIPELINING\r\n");
    });
    const auto fates = send(at(server.port()), many(200));
    for (std::size_t i = 0; i < fates.size(); ++i) {
        const Fate expected = i < 50 ? Fate::Accepted : i < 100 ? Fate::Unknown : Fate::NotTried;
        EXPECT_EQ(fates[i].fate, expected) << i;
        EXPECT_EQ(fates[i].words.isEmpty(), i < 50);
    }
    EXPECT_EQ(server.lines(), 1);
    EXPECT_EQ(count_of(server, "end"), 2); // what may have been taken is not sent again
}

TEST_F(Smtp, WaitsOnceForAServerThatFallsSilent)
{
    patience = 200ms;
    for (const QByteArray &silent_at : {QByteArray("."), QByteArray("MAIL")}) {
        const StubServer server([&silent_at](StubLine &line) {
            int heard = 0;
            serve(
                line,
                [&](const QByteArray &command) -> QByteArray {
                    heard += command.startsWith(silent_at) ? 1 : 0;
                    return heard == 2 ? "stall" : QByteArray();
                },
                "");
        });
        const auto fates = send(at(server.port()), many(300));
        const std::size_t unknown = silent_at == "." ? 100 : 50;
        for (std::size_t i = 0; i < fates.size(); ++i) {
            const Fate expected = i < 50        ? Fate::Accepted
                                  : i < unknown ? Fate::Unknown
                                                : Fate::NotTried;
            EXPECT_EQ(fates[i].fate, expected) << i;
            EXPECT_EQ(fates[i].words.isEmpty(), i < 50);
        }
        EXPECT_EQ(server.lines(), 1);
    }
}
} // namespace
