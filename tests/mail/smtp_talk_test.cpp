// What is said to servers that answer by the book, or nearly so.
#include "tests/mail/servers/certificates.h"
#include "tests/mail/servers/smtp_stub.h"
#include "tests/mail/smtp_room.h"

namespace
{
using namespace std::chrono_literals;

TEST_F(Smtp, NamesAllRecipientsAtOnceWhereTheServerTakesThat)
{
    // It answers nothing before it has heard all of them, and the next envelope's names come along
    // with the content of the one before.
    const StubServer server([](StubLine &line) {
        line.say("220 stub\r\n");
        line.answer("250-stub\r\n250 pipelining\r\n");
        for (int envelope = 0; envelope < 2; ++envelope) {
            for (int i = 0; i < 51; ++i)
                line.hear();
            line.say(envelope == 0 ? QByteArray() : "250 content\r\n");
            line.say(QByteArray("250 ok\r\n").repeated(51));
            line.answer("354 go on\r\n");
            while (line.is_open() && line.hear() != ".") {
            }
        }
        line.say("250 content\r\n");
        line.answer("221 bye\r\n");
    });
    const auto fates = send(at(server.port()), many(100));
    EXPECT_TRUE(std::ranges::all_of(
        fates, [](const RecipientFate &each) { return each.fate == Fate::Accepted; }));
}

TEST_F(Smtp, AbandonsAnEnvelopeWithoutTakers)
{
    const StubServer server(by_the_book([](const QByteArray &command) -> QByteArray {
        return command.startsWith("RCPT") ? "550 no\r\n" : QByteArray();
    }));
    send(at(server.port()), {"a@x.example"});
    EXPECT_EQ(commands(server), (QList<QByteArray>{"EHLO", "MAIL", "RCPT", "RSET", "QUIT"}));
}

TEST_F(Smtp, DoesNotGoOnWithoutTheEncryptionThatIsAskedFor)
{
    const StubServer server(by_the_book([](const QByteArray &) { return QByteArray(); }));
    EXPECT_EQ(
        failure(at(server.port(), LineSecurity::StartTls, SignInKind::Password)),
        "The mail server 'localhost' (port PORT), encrypting the line: the server does not offer "
        "encryption (STARTTLS), which the profile asks for");
    EXPECT_EQ(commands(server), QList<QByteArray>{"EHLO"});
}

TEST_F(Smtp, DoesNotGoOnWhenTheEncryptionIsRefused)
{
    const StubServer server(by_the_book(
        [](const QByteArray &command) -> QByteArray {
            return command == "STARTTLS" ? "454 not now\r\n" : QByteArray();
        },
        "250-STARTTLS\r\n250-AUTH PLAIN\r\n"));
    EXPECT_EQ(failure(at(server.port(), LineSecurity::StartTls, SignInKind::Password)),
              "The mail server 'localhost' (port PORT), encrypting the line: 454 not now");
    EXPECT_EQ(commands(server), (QList<QByteArray>{"EHLO", "STARTTLS"}));
}

TEST_F(Smtp, AsksAnewWhatIsOfferedOnceEncrypted)
{
    const Certificates certificates;
    trusted = certificates.authority();
    const StubServer server([&](StubLine &line) {
        line.say("220 stub\r\n");
        line.answer("250-stub\r\n250-AUTH XOAUTH2 PLAIN\r\n250 STARTTLS\r\n"); // the first is a lie
        line.answer("220 go ahead\r\n");
        line.encrypt(certificates.certificate_file("good"), certificates.key_file("good"));
        line.answer("250-stub\r\n250 AUTH=LOGIN\r\n");
        line.answer("334 VXNlcm5hbWU6\r\n");
        line.answer("334 UGFzc3dvcmQ6\r\n");
        line.answer("535 no\r\n");
    });
    EXPECT_EQ(failure(at(server.port(), LineSecurity::StartTls, SignInKind::Password)),
              "The mail server 'localhost' (port PORT), signing on: 535 no");
    wait_for_end_of(server);
    EXPECT_EQ(server.heard().mid(2, 3),
              (QList<QByteArray>{"[tls] EHLO [127.0.0.1]", "[tls] AUTH LOGIN", "[tls] YW5u"}));
}

TEST_F(Smtp, SignsOnWithATokenAndUnderstandsItsRefusal)
{
    credentials = {SignInKind::Token, "ann", "ya29.abc"};
    const StubServer offering([](StubLine &line) {
        line.say("220 stub\r\n");
        line.answer("250 AUTH XOAUTH2\r\n");
        line.hear();
    });
    EXPECT_TRUE(failure(at(offering.port(), LineSecurity::Plain, SignInKind::Token))
                    .contains("the server offers no way to sign on that is known here"))
        << "the first line of the answer is no extension";
    const StubServer refusing([](StubLine &line) {
        line.say("220 stub\r\n");
        line.answer("250-stub\r\n250 AUTH XOAUTH2\r\n");
        line.answer("334 eyJzdGF0dXMiOiI0MDEifQ==\r\n");
        line.hear(); // the empty answer that the protocol asks for
        line.say("535 5.7.8 token expired\r\n");
        line.hear();
    });
    EXPECT_EQ(failure(at(refusing.port(), LineSecurity::Plain, SignInKind::Token)),
              "The mail server 'localhost' (port PORT), signing on: 535 5.7.8 token expired");
    wait_for_end_of(refusing);
    EXPECT_TRUE(refusing.heard().value(1).startsWith("[clear] AUTH XOAUTH2 "));
}

TEST_F(Smtp, SendsALongTokenOnALineOfItsOwn)
{
    credentials = {SignInKind::Token, "ann", QString(2'000, 't')};
    const StubServer server([](StubLine &line) {
        line.say("220 stub\r\n");
        line.answer("250-stub\r\n250 AUTH XOAUTH2\r\n");
        line.answer("334 \r\n");
        line.answer("535 no\r\n");
    });
    failure(at(server.port(), LineSecurity::Plain, SignInKind::Token));
    wait_for_end_of(server);
    EXPECT_EQ(server.heard().value(1), "[clear] AUTH XOAUTH2");
    EXPECT_GT(server.heard().value(2).size(), 2'000);
}

TEST_F(Smtp, ShowsNoSecretThatTheServerRepeats)
{
    const QByteArray plain = QByteArray("\0ann\0s3crét", 12).toBase64();
    const QByteArray where_words_are_cut = QByteArray(285, 'x') + "s3crét";
    for (const QByteArray &echo : {QByteArray("s3crét"), plain, where_words_are_cut}) {
        const StubServer server([&echo](StubLine &line) {
            line.say("220 stub\r\n");
            line.answer("250-stub\r\n250 AUTH PLAIN\r\n");
            line.answer("535 wrong: " + echo + "\r\n");
        });
        const QString text = failure(at(server.port(), LineSecurity::Plain, SignInKind::Password));
        EXPECT_FALSE(text.contains("s3cr") || text.contains(QString::fromLatin1(plain)))
            << text.toStdString();
        EXPECT_TRUE(text.contains("signing on")) << text.toStdString();
    }
}

TEST_F(Smtp, ShowsNoSecretInTheFatesOfRecipients)
{
    for (const QByteArray &at_command : {QByteArray("MAIL"), QByteArray("RCPT"), QByteArray(".")}) {
        const StubServer server(by_the_book(
            [&at_command](const QByteArray &command) -> QByteArray {
                if (command.startsWith("AUTH"))
                    return "235 in\r\n";
                return command.startsWith(at_command) ? "550 not with s3crét\r\n" : QByteArray();
            },
            "250-AUTH PLAIN\r\n"));
        const auto fates =
            send(at(server.port(), LineSecurity::Plain, SignInKind::Password), {"a@x.example"});
        EXPECT_EQ(fates.at(0).fate, Fate::Refused);
        EXPECT_EQ(fates.at(0).words, "its answer repeats a secret and is not shown");
    }
}

TEST_F(Smtp, NamesTheServerWhenTheSecretCannotBeSent)
{
    credentials.secret = QString("a%1b").arg(QChar(u'\0'));
    const StubServer server(
        by_the_book([](const QByteArray &) { return QByteArray(); }, "250-AUTH PLAIN\r\n"));
    EXPECT_EQ(failure(at(server.port(), LineSecurity::Plain, SignInKind::Password)),
              "The mail server 'localhost' (port PORT), signing on: the password holds a character "
              "that cannot be sent");
}

TEST_F(Smtp, AsksForNoPasswordThatTheServerDoesNotNeed)
{
    bool asked = false;
    const StubServer server(by_the_book([](const QByteArray &) { return QByteArray(); }));
    SmtpWayOut way(at(server.port()),
                   [&asked] {
                       asked = true;
                       return Credentials();
                   },
                   {5s, [] {}, {}});
    way.hand_over(sender, {"a@x.example"}, message);
    EXPECT_FALSE(asked);
}

TEST_F(Smtp, RefusesAddressesBeyondAsciiWhereTheServerCannotTakeThem)
{
    const StubServer server(by_the_book([](const QByteArray &) { return QByteArray(); }));
    const auto fates = send(at(server.port()), {"jörg@x.example", "a@x.example"});
    EXPECT_EQ(fates.at(0).fate, Fate::Refused);
    EXPECT_EQ(fates.at(0).words,
              "the server takes no address with letters beyond ASCII (SMTPUTF8)");
    EXPECT_EQ(fates.at(1).fate, Fate::Accepted);
    EXPECT_TRUE(
        failure(at(server.port()), {"a@x.example"}, "To: jörg@x.example\r\n\r\nx\r\n")
            .endsWith("sending: the server takes no address with letters beyond ASCII (SMTPUTF8)"));
}
} // namespace
