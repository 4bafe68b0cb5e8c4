// Lines that leave this machine unencrypted.
#include "mail/imap_inbox.h"
#include "mail/pop3_inbox.h"
#include "mail/smtp_way_out.h"
#include "tests/mail/servers/stub_server.h"

#include <QTest>
#include <gtest/gtest.h>

namespace
{
using namespace std::chrono_literals;

Credentials credentials()
{
    return {SignInKind::Password, "ann", "pencil"};
}

MailServer plain_server(const StubServer &stub)
{
    MailServer server;
    server.host = "127.0.0.1";
    server.port = stub.port();
    server.security = LineSecurity::Plain;
    server.user = "ann";
    return server;
}

struct Outcome
{
    QString failure;
    QList<QByteArray> heard;
};

// By way of a server that offers to take a password and says yes to everything.
template <typename SignOn>
Outcome sign_on_to(const QByteArray &greeting, const QByteArray &answer, SignOn &&sign_on)
{
    const StubServer stub([&](StubLine &line) {
        line.say(greeting);
        while (!line.answer(answer).isEmpty()) {
        }
    });
    NetworkConditions conditions;
    conditions.patience = 3s;
    conditions.stays_here = [](const QHostAddress &, const QHostAddress &) { return false; };
    Outcome outcome;
    try {
        sign_on(plain_server(stub), conditions);
    } catch (const RuntimeError &error) {
        outcome.failure = error.description().section(", ", 1);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return !stub.heard().isEmpty(); }));
    outcome.heard = stub.heard();
    return outcome;
}

TEST(PlainLine, CarriesNoPasswordOfImapToAnotherMachine)
{
    const Outcome outcome =
        sign_on_to("* OK hello\r\n", "* CAPABILITY IMAP4rev1 AUTH=PLAIN\r\nTAG OK\r\n",
                   [](const MailServer &server, const NetworkConditions &conditions) {
                       ImapInbox(server, {}, &credentials, conditions).fetch();
                   });
    EXPECT_EQ(outcome.failure, "logging in: the line is not encrypted, so no password is sent");
    EXPECT_EQ(outcome.heard, QList<QByteArray>{"[clear] o1 LOGOUT"});
}

TEST(PlainLine, CarriesNoPasswordOfPop3ToAnotherMachine)
{
    const Outcome outcome =
        sign_on_to("+OK hello\r\n", "+OK\r\n",
                   [](const MailServer &server, const NetworkConditions &conditions) {
                       Pop3Inbox(server, &credentials, conditions).fetch();
                   });
    EXPECT_EQ(outcome.failure, "logging in: the line is not encrypted, so no password is sent");
    EXPECT_EQ(outcome.heard, QList<QByteArray>{"[clear] QUIT"});
}

TEST(PlainLine, CarriesNoPasswordOfSmtpToAnotherMachine)
{
    const Outcome outcome =
        sign_on_to("220 hello\r\n", "250-stub\r\n250 AUTH PLAIN\r\n",
                   [](const MailServer &server, const NetworkConditions &conditions) {
                       SmtpWayOut(server, &credentials, conditions)
                           .hand_over("ann@example.org", {"bob@example.org"}, "Subject: x\r\n\r\n");
                   });
    EXPECT_EQ(outcome.failure, "signing on: the line is not encrypted: everybody on the way could "
                               "read the password");
    EXPECT_EQ(outcome.heard, QList<QByteArray>{"[clear] EHLO [127.0.0.1]"});
}
} // namespace
