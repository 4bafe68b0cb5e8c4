// Signing on to POP3 servers that do what a good one does not.
#include "mail/sign_in_refused.h"
#include "tests/mail/servers/stub_pop3.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
using namespace std::chrono_literals;

TEST_F(StubPop3, SendsALongTokenOnlyWhenItIsAskedFor)
{
    QByteArrayList answers = good;
    answers[0] = "+OK\r\nTOP\r\nSASL XOAUTH2\r\n.\r\n";
    const QList<QByteArray> brief = said_to(answers, {SignInKind::Token, "ann", "t0ken"});
    EXPECT_TRUE(brief[1].startsWith("[clear] AUTH XOAUTH2 dXNlcj1hbm4B"));
    answers.insert(1, "+ \r\n");
    const QList<QByteArray> said =
        said_to(answers, {SignInKind::Token, "ann", QString(500, QChar(u't'))});
    EXPECT_EQ(said[1], "[clear] AUTH XOAUTH2");
    EXPECT_TRUE(said[2].startsWith("[clear] dXNlcj1hbm4B"));
}

TEST_F(StubPop3, EndsASignOnThatTheServerDoesNotEnd)
{
    const StubServer stub([](StubLine &line) {
        speak(line, {"+OK\r\nTOP\r\nSASL XOAUTH2\r\n.\r\n"});
        for (int i = 0; i < 100 && line.is_open(); ++i)
            line.answer("+ \r\n");
    });
    Pop3Inbox reader = inbox(stub, LineSecurity::Plain, {SignInKind::Token, "ann", "t0ken"});
    EXPECT_EQ(outcome(reader),
              QStringList{"logging in: the server asks for more than the sign-on has"});
}

TEST_F(StubPop3, BlamesThePasswordOnlyWhenTheServerDoes)
{
    for (const QByteArrayList &begin :
         {QByteArrayList{capabilities}, QByteArrayList{"-ERR\r\n", "+OK\r\n"}}) {
        const auto fetch = [&](const QByteArray &answer) {
            const StubServer stub(
                [&](StubLine &line) { speak(line, begin + QByteArrayList{answer}); });
            inbox(stub).fetch();
        };
        EXPECT_THROW(fetch("-ERR [AUTH] wrong\r\n"), SignInRefused);
        EXPECT_THROW(fetch("-ERR wrong\r\n"), SignInRefused);
        for (const char *code : {"IN-USE", "SYS/TEMP", "LOGIN-DELAY"}) {
            try {
                fetch(QByteArray("-ERR [") + code + "] later\r\n");
                FAIL() << "signed on";
            } catch (const SignInRefused &) {
                FAIL() << code;
            } catch (const RuntimeError &error) {
                EXPECT_TRUE(error.description().endsWith("] later")) << error.what();
            }
        }
    }
}

TEST_F(StubPop3, SendsNoPasswordWhereTheEncryptionWasStruckOut)
{
    for (const QByteArrayList &answers :
         {QByteArrayList{capabilities}, QByteArrayList{"-ERR what?\r\n"},
          QByteArrayList{"+OK\r\nSTLS\r\n.\r\n", "-ERR not now\r\n"}}) {
        const StubServer stub([answers](StubLine &line) {
            speak(line, answers);
            line.hear();
        });
        const QStringList found = outcome(stub, LineSecurity::StartTls);
        ASSERT_EQ(found.size(), 1);
        EXPECT_TRUE(found[0].startsWith("encrypting the line: ")) << found[0].toStdString();
        EXPECT_FALSE(stub.heard().join().contains("AUTH"));
        EXPECT_FALSE(stub.heard().join().contains("USER"));
        EXPECT_EQ(stub.lines(), 1);
    }
}

TEST_F(StubPop3, RefusesWhatIsSlippedInBeforeTheEncryption)
{
    const StubServer stub([this](StubLine &line) {
        speak(line, {"+OK\r\nSTLS\r\n.\r\n", "+OK go ahead\r\n+OK more\r\n"});
        encrypt(line);
    });
    EXPECT_EQ(
        outcome(stub, LineSecurity::StartTls),
        QStringList{"encrypting the line: the server went on in plain text after its go-ahead"});
}

TEST_F(StubPop3, TellsWhereTheSignOnWasCutOrStalled)
{
    const QByteArray tls = "+OK\r\nSTLS\r\n.\r\n";
    const QByteArray login = "+OK\r\nSASL LOGIN\r\n.\r\n";
    const QByteArray asked = "+ VXNlcm5hbWU6\r\n";
    expect_told("+OK hello\r\n",
                {{LineSecurity::StartTls, {}, "encrypting the line"},
                 {LineSecurity::StartTls, {tls}, "encrypting the line"},
                 {LineSecurity::StartTls, {tls, "+OK go\r\n"}, "encrypting the line"},
                 {LineSecurity::Plain, {login}, "logging in"},
                 {LineSecurity::Plain, {login, asked}, "logging in"},
                 {LineSecurity::Plain, {login, asked, asked}, "logging in"}});
}

TEST_F(StubPop3, AsksAgainWhatTheServerCanOnceTheLineIsEncrypted)
{
    const StubServer stub([this](StubLine &line) {
        speak(line, {"+OK\r\nSTLS\r\nSASL LOGIN\r\n.\r\n", "+OK go ahead\r\n"});
        encrypt(line);
        for (const QByteArray &answer : good)
            line.answer(answer);
    });
    EXPECT_EQ(outcome(stub, LineSecurity::StartTls), all);
}

TEST_F(StubPop3, SaysWhenThereIsNoWayToSignOn)
{
    const StubServer stub([](StubLine &line) { speak(line, good); });
    Pop3Inbox with_token = inbox(stub, LineSecurity::Plain, {SignInKind::Token, "ann", "pencil"});
    EXPECT_EQ(outcome(with_token),
              QStringList{"logging in: the server offers no way to sign on with "
                          "this; it offers: PLAIN"});
    Pop3Inbox with_nothing = inbox(stub, LineSecurity::Plain, {});
    EXPECT_EQ(outcome(with_nothing), QStringList{"logging in: the server asks for a password"});
    const StubServer old([](StubLine &line) { speak(line, {"-ERR\r\n"}); });
    Pop3Inbox with_break =
        inbox(old, LineSecurity::Plain, {SignInKind::Password, "ann", "pen\r\nDELE 1"});
    EXPECT_EQ(outcome(with_break), QStringList{"logging in: the user name or the password holds a "
                                               "character that cannot be sent"});
}

TEST_F(StubPop3, BelievesNoSignOnThatIsNotProved)
{
    EXPECT_EQ(outcome_of({"+OK\r\nSASL SCRAM-SHA-256\r\n.\r\n", "+OK in\r\n"}),
              QStringList{"logging in: the server has not proved that it knows the password"});
}
} // namespace
