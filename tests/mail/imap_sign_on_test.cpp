// Signing on to IMAP servers that do what a good one does not.
#include "mail/sign_in_refused.h"
#include "tests/mail/servers/stub_imap.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
using namespace std::chrono_literals;

TEST_F(StubImap, BlamesThePasswordOnlyWhenTheServerDoes)
{
    for (const QByteArray &offer :
         {capabilities, QByteArray("* CAPABILITY IMAP4rev1\r\nTAG OK x\r\n")}) {
        const auto fetch = [&](const QByteArray &answer) {
            const StubServer stub([&](StubLine &line) { speak(line, {offer, answer}); });
            inbox(stub).fetch();
        };
        EXPECT_THROW(fetch("TAG NO [AUTHENTICATIONFAILED] wrong\r\n"), SignInRefused);
        EXPECT_THROW(fetch("TAG NO wrong\r\n"), SignInRefused);
        for (const char *code : {"UNAVAILABLE", "INUSE", "LIMIT"}) {
            try {
                fetch(QByteArray("TAG NO [") + code + "] later\r\n");
                FAIL() << "signed on";
            } catch (const SignInRefused &) {
                FAIL() << code;
            } catch (const RuntimeError &error) {
                EXPECT_TRUE(error.description().endsWith("] later")) << error.what();
            }
        }
    }
}

TEST_F(StubImap, BlamesThePasswordAlsoWhereTheMechanismDoes)
{
    // "e=invalid-proof", "e=other-error"
    for (const QByteArray error : {"ZT1pbnZhbGlkLXByb29m", "ZT1vdGhlci1lcnJvcg=="}) {
        const StubServer stub([&](StubLine &line) {
            speak(line, {"* CAPABILITY IMAP4rev1 AUTH=SCRAM-SHA-256 SASL-IR\r\nTAG OK x\r\n",
                         "+ " + error + "\r\n"});
        });
        try {
            inbox(stub).fetch();
            FAIL() << "signed on";
        } catch (const SignInRefused &refusal) {
            EXPECT_TRUE(refusal.description().endsWith("logging in: invalid-proof"));
        } catch (const RuntimeError &failure) {
            EXPECT_TRUE(failure.description().endsWith("logging in: other-error"));
        }
    }
}

TEST_F(StubImap, ShowsNoSecretInTheFormThatACommandHolds)
{
    const StubServer stub([](StubLine &line) {
        speak(line, {"* CAPABILITY IMAP4rev1\r\nTAG OK x\r\n",
                     R"(TAG BAD what is LOGIN "ann" "a \"b\" \\c"?)"
                     "\r\n"});
    });
    ImapInbox reader =
        inbox(stub, LineSecurity::Plain, {SignInKind::Password, "ann", "a \"b\" \\c"});
    EXPECT_EQ(outcome(reader),
              QStringList{"logging in: its answer repeats a secret and is not shown"});
}

TEST_F(StubImap, SendsNoPasswordWhereTheEncryptionWasStruckOut)
{
    for (const QByteArrayList &answers :
         {QByteArrayList{capabilities},
          QByteArrayList{"* CAPABILITY IMAP4rev1 STARTTLS\r\nTAG OK x\r\n", "TAG NO not now\r\n"},
          QByteArrayList{"* CAPABILITY IMAP4rev1 STARTTLS\r\nTAG OK x\r\n", "TAG BAD what?\r\n"}}) {
        const StubServer stub([answers](StubLine &line) {
            speak(line, answers);
            line.hear();
        });
        const QStringList found = outcome(stub, LineSecurity::StartTls);
        ASSERT_EQ(found.size(), 1);
        EXPECT_TRUE(found[0].startsWith("encrypting the line: ")) << found[0].toStdString();
        EXPECT_FALSE(stub.heard().join().contains("AUTH"));
        EXPECT_EQ(stub.lines(), 1);
    }
}

TEST_F(StubImap, RefusesWhatIsSlippedInBeforeTheEncryption)
{
    const StubServer stub([this](StubLine &line) {
        speak(line, {"* CAPABILITY IMAP4rev1 STARTTLS\r\nTAG OK x\r\n",
                     "TAG OK go ahead\r\n* CAPABILITY AUTH=PLAIN\r\n"});
        encrypt(line);
    });
    EXPECT_EQ(
        outcome(stub, LineSecurity::StartTls),
        QStringList{"encrypting the line: the server went on in plain text after its go-ahead"});
}

TEST_F(StubImap, RefusesToBeSignedOnBeforeTheEncryption)
{
    const StubServer stub([](StubLine &line) {
        speak(line, {capabilities, opened()}, "* PREAUTH you are in\r\n");
    });
    EXPECT_EQ(outcome(stub, LineSecurity::StartTls),
              QStringList{"connecting: the server signs on before the line is encrypted"});
}

TEST_F(StubImap, TellsWhereTheSignOnWasCutOrStalled)
{
    const QByteArray tls = "* CAPABILITY IMAP4rev1 STARTTLS\r\nTAG OK x\r\n";
    const QByteArray login = "* CAPABILITY IMAP4rev1 AUTH=LOGIN\r\nTAG OK x\r\n";
    const QByteArray asked = "+ VXNlcm5hbWU6\r\n";
    expect_told("* OK hello\r\n",
                {{LineSecurity::StartTls, {}, "encrypting the line"},
                 {LineSecurity::StartTls, {tls}, "encrypting the line"},
                 {LineSecurity::StartTls, {tls, "TAG OK go\r\n"}, "encrypting the line"},
                 {LineSecurity::Plain, {login}, "logging in"},
                 {LineSecurity::Plain, {login, asked}, "logging in"},
                 {LineSecurity::Plain, {login, asked, asked}, "logging in"}});
}

TEST_F(StubImap, AsksAgainWhatTheServerCanOnceTheLineIsEncrypted)
{
    const StubServer stub([this](StubLine &line) {
        speak(line,
              {"* CAPABILITY IMAP4rev1 STARTTLS AUTH=LOGIN\r\nTAG OK x\r\n", "TAG OK go\r\n"});
        encrypt(line);
        for (const QByteArray &answer : good)
            line.answer(answer);
    });
    EXPECT_EQ(outcome(stub, LineSecurity::StartTls), all);
}

TEST_F(StubImap, MayBeSignedOnFromTheStart)
{
    const StubServer stub([](StubLine &line) {
        speak(line, {opened(), listed(), messages()}, "* PREAUTH you are in\r\n");
    });
    EXPECT_EQ(outcome(stub), all);
}

TEST_F(StubImap, LogsInWithoutAMechanism)
{
    QByteArrayList answers = good;
    answers[0] = "* CAPABILITY IMAP4rev1\r\nTAG OK x\r\n";
    StubServer stub([&](StubLine &line) { speak(line, answers); });
    {
        ImapInbox reader =
            inbox(stub, LineSecurity::Plain, {SignInKind::Password, "ann", "a \"b\" \\c"});
        EXPECT_EQ(outcome(reader), all);
    }
    EXPECT_EQ(heard_by(stub).value(1), "[clear] o2 LOGIN \"ann\" \"a \\\"b\\\" \\\\c\"");
}

TEST_F(StubImap, SendsAsALiteralWhatAQuotedStringCannotHold)
{
    StubServer stub([](StubLine &line) {
        speak(line, {"* CAPABILITY IMAP4rev1\r\nTAG OK x\r\n", "+ go on\r\n", "o2 OK in\r\n",
                     opened(), listed(), messages(), "TAG OK bye\r\n"});
    });
    {
        ImapInbox reader =
            inbox(stub, LineSecurity::Plain, {SignInKind::Password, "ann", "pä\"ss"});
        EXPECT_EQ(outcome(reader), all);
    }
    EXPECT_EQ(heard_by(stub).mid(1, 2),
              (QList<QByteArray>{"[clear] o2 LOGIN \"ann\" {6}", "[clear] p\xC3\xA4\"ss"}));
}

TEST_F(StubImap, SaysWhenThereIsNoWayToSignOn)
{
    EXPECT_EQ(outcome_of({"* CAPABILITY IMAP4rev1 LOGINDISABLED AUTH=GSSAPI\r\nTAG OK x\r\n"}),
              QStringList{"logging in: the server offers no way to sign on with this; it offers: "
                          "GSSAPI"});
    const StubServer stub([](StubLine &line) { speak(line, good); });
    ImapInbox with_token = inbox(stub, LineSecurity::Plain, {SignInKind::Token, "ann", "pencil"});
    EXPECT_EQ(outcome(with_token),
              QStringList{"logging in: the server offers no way to sign on with "
                          "this; it offers: PLAIN"});
    ImapInbox with_nothing = inbox(stub, LineSecurity::Plain, {});
    EXPECT_EQ(outcome(with_nothing), QStringList{"logging in: the server asks for a password"});
}

TEST_F(StubImap, SignsOnWithATokenAndTellsItsRefusal)
{
    const QByteArray offer = "* CAPABILITY IMAP4rev1 AUTH=XOAUTH2\r\nTAG OK x\r\n";
    QByteArrayList answers = good;
    answers[0] = offer;
    answers.insert(1, "+ \r\n"); // without SASL-IR the server asks for the token
    answers[2] = "o2 OK in\r\n";
    const StubServer stub([&](StubLine &line) { speak(line, answers); });
    ImapInbox reader = inbox(stub, LineSecurity::Plain, {SignInKind::Token, "ann", "t0ken"});
    EXPECT_EQ(outcome(reader), all);

    const StubServer refusing([&](StubLine &line) {
        speak(line, {offer, "+ \r\n", "+ eyJzdGF0dXMiOiI0MDEifQ==\r\n", "o2 NO expired\r\n"});
    });
    ImapInbox refused = inbox(refusing, LineSecurity::Plain, {SignInKind::Token, "ann", "t0ken"});
    EXPECT_EQ(outcome(refused), QStringList{"logging in: expired"});
}

TEST_F(StubImap, EndsASignOnThatTheServerDoesNotEnd)
{
    const StubServer stub([](StubLine &line) {
        speak(line, {"* CAPABILITY IMAP4rev1 AUTH=XOAUTH2 SASL-IR\r\nTAG OK x\r\n"});
        for (int i = 0; i < 100 && line.is_open(); ++i)
            line.answer("+ \r\n");
    });
    ImapInbox reader = inbox(stub, LineSecurity::Plain, {SignInKind::Token, "ann", "t0ken"});
    EXPECT_EQ(outcome(reader),
              QStringList{"logging in: the server asks for more than the sign-on has"});
}

TEST_F(StubImap, BelievesNoSignOnThatIsNotProved)
{
    EXPECT_EQ(outcome_of(
                  {"* CAPABILITY IMAP4rev1 AUTH=SCRAM-SHA-256 SASL-IR\r\nTAG OK x\r\n", signed_on}),
              QStringList{"logging in: the server has not proved that it knows the password"});
}
} // namespace
