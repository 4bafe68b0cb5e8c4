#include "mail/smtp_delivery.h"
#include "mail/smtp_way_out.h"
#include "platform/runtime_error.h"
#include "tests/mail/servers/certificates.h"
#include "tests/mail/servers/smtp_server.h"
#include "tests/mail/servers/stub_server.h"
#include "tests/support/print_qt.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace
{
using namespace std::chrono_literals;

const QByteArray message = "From: me@here.example\r\nSubject: x\r\n\r\n.\r\n..\r\n.a\r\nend\r\n";
const QString sender = QStringLiteral("me@here.example");

MailServer at(quint16 port, LineSecurity security = LineSecurity::Plain,
              SignInKind sign_in = SignInKind::None)
{
    MailServer server;
    server.host = QStringLiteral("localhost");
    server.port = port;
    server.security = security;
    server.sign_in = sign_in;
    server.user = QStringLiteral("ann");
    return server;
}

QStringList many(int count)
{
    QStringList recipients;
    for (int i = 0; i < count; ++i)
        recipients += QString("n%1@x.example").arg(i);
    return recipients;
}

class Smtp : public testing::Test
{
protected:
    std::vector<RecipientFate> send(const MailServer &server, const QStringList &recipients,
                                    const QByteArray &bytes = message, const QString &from = sender)
    {
        SmtpWayOut way(server, [this] { return credentials; }, {patience, [] {}, trusted});
        return way.hand_over(from, recipients, bytes);
    }
    // The failure's text without the port.
    QString failure(const MailServer &server, const QStringList &recipients = {"a@x.example"},
                    const QByteArray &bytes = message)
    {
        try {
            send(server, recipients, bytes);
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), 32000);
            return without_port(error.description(), server.port);
        }
        return "none";
    }
    static QString without_port(QString text, quint16 port)
    {
        return text.replace(QString::number(port), QStringLiteral("PORT"));
    }

    Credentials credentials{SignInKind::Password, "ann", "s3crét"};
    std::chrono::milliseconds patience = 5s;
    QList<QSslCertificate> trusted;
};

QStringList options_with(const Certificates &certificates, const QString &how, const QString &name)
{
    return {how, certificates.certificate_file(name), certificates.key_file(name)};
}

TEST_F(Smtp, DeliversTheMessageAsItIs)
{
    const SmtpServer server;
    const auto fates = send(at(server.port()), {"a@x.example", "\"b c\"@x.example"});
    ASSERT_EQ(server.taken().size(), 1);
    const TakenMessage taken = server.taken()[0];
    EXPECT_EQ(taken.bytes, message);
    EXPECT_EQ(taken.sender, sender);
    EXPECT_EQ(taken.recipients, (QStringList{"a@x.example", "\"b c\"@x.example"}));
    EXPECT_EQ(taken.options, QStringList{"SIZE=" + QString::number(message.size())});
    EXPECT_EQ(taken.client, "[127.0.0.1]");
    EXPECT_FALSE(taken.is_encrypted);
    EXPECT_FALSE(taken.is_signed_on);
    ASSERT_EQ(fates.size(), 2U);
    EXPECT_EQ(fates[1].recipient, "\"b c\"@x.example");
    EXPECT_EQ(fates[1].fate, Fate::Accepted);
}

TEST_F(Smtp, SignsOnOverAnEncryptedLine)
{
    const Certificates certificates;
    trusted = certificates.authority();
    for (const auto &[how, security] :
         {std::pair("--tls", LineSecurity::Tls), std::pair("--starttls", LineSecurity::StartTls)}) {
        const SmtpServer server(options_with(certificates, how, "good") + QStringList{"--sign-on"});
        const auto fates = send(at(server.port(), security, SignInKind::Password), {"a@x.example"});
        EXPECT_EQ(fates.at(0).fate, Fate::Accepted);
        ASSERT_EQ(server.taken().size(), 1) << how;
        EXPECT_TRUE(server.taken()[0].is_encrypted);
        EXPECT_TRUE(server.taken()[0].is_signed_on);
    }
}

TEST_F(Smtp, TrustsNoWrongCertificate)
{
    const Certificates certificates;
    trusted = certificates.authority();
    for (const char *how : {"--tls", "--starttls"}) {
        const SmtpServer server(options_with(certificates, how, "wrong"));
        const auto security = QLatin1String(how) == QLatin1String("--tls") ? LineSecurity::Tls
                                                                           : LineSecurity::StartTls;
        const QString text = failure(at(server.port(), security, SignInKind::Password));
        EXPECT_TRUE(
            text.startsWith("The mail server 'localhost' (port PORT), encrypting the line: the "
                            "server's certificate cannot be trusted: The host name did not"))
            << text.toStdString();
        EXPECT_TRUE(server.taken().isEmpty());
    }
}

TEST_F(Smtp, SaysWhyTheSignOnIsRefused)
{
    const Certificates certificates;
    trusted = certificates.authority();
    const SmtpServer server(options_with(certificates, "--tls", "good") + QStringList{"--sign-on"});
    credentials.secret = "wrong-secret";
    const QString text = failure(at(server.port(), LineSecurity::Tls, SignInKind::Password));
    EXPECT_EQ(text, "The mail server 'localhost' (port PORT), signing on: 535 5.7.8 Authentication "
                    "credentials invalid");
    EXPECT_TRUE(server.taken().isEmpty());
}

TEST_F(Smtp, KeepsTheFateOfEveryRecipient)
{
    const SmtpServer server;
    const auto fates = send(at(server.port()), {"a@x.example", "bad@x.example", "later@x.example",
                                                "second@x.example", "b@x.example"});
    ASSERT_EQ(fates.size(), 5U);
    EXPECT_EQ(fates[0].fate, Fate::Accepted);
    EXPECT_EQ(fates[1].fate, Fate::Refused);
    EXPECT_EQ(fates[1].words, "550 5.1.1 <bad@x.example>: no such user");
    EXPECT_EQ(fates[2].fate, Fate::NotNow);
    EXPECT_EQ(fates[2].words, "450 4.2.1 try later");
    EXPECT_EQ(fates[3].fate, Fate::Accepted);
    EXPECT_EQ(fates[4].fate, Fate::Accepted);
    ASSERT_EQ(server.taken().size(), 2);
    EXPECT_EQ(server.taken()[0].recipients, (QStringList{"a@x.example", "b@x.example"}));
    EXPECT_EQ(server.taken()[1].recipients, QStringList{"second@x.example"}); // in a later envelope
}

TEST_F(Smtp, SendsNothingWhenNobodyIsTaken)
{
    const SmtpServer server;
    const auto fates = send(at(server.port()), {"bad1@x.example", "bad2@x.example"});
    EXPECT_EQ(fates.at(0).fate, Fate::Refused);
    EXPECT_EQ(fates.at(1).words, "550 5.1.1 <bad2@x.example>: no such user");
    EXPECT_TRUE(server.taken().isEmpty());
}

TEST_F(Smtp, ReachesTwoThousandInEnvelopesOfFifty)
{
    const SmtpServer server;
    const QStringList recipients = many(2'000);
    const auto fates = send(at(server.port()), recipients);
    EXPECT_TRUE(std::ranges::all_of(
        fates, [](const RecipientFate &each) { return each.fate == Fate::Accepted; }));
    QStringList reached;
    for (const TakenMessage &taken : server.taken()) {
        EXPECT_EQ(taken.recipients.size(), 50);
        reached += taken.recipients;
    }
    EXPECT_EQ(reached, recipients);
}

TEST_F(Smtp, RefusesAMessageThatIsTooLargeForTheServer)
{
    const SmtpServer server({"--size", "1000000"});
    EXPECT_EQ(
        failure(at(server.port()), {"a@x.example"}, message + QByteArray(1'200'000, 'x')),
        "The mail server 'localhost' (port PORT), sending: the message is too large: it has 1.2 "
        "MB, and the server takes at most 1.0 MB");
    EXPECT_TRUE(server.taken().isEmpty());
}

TEST_F(Smtp, TellsWhenTheContentIsRefused)
{
    const SmtpServer server;
    const auto fates = send(at(server.port()), many(60),
                            QByteArray(message).replace("Subject: x", "Subject: refuse this"));
    for (const RecipientFate &each : fates) {
        EXPECT_EQ(each.fate, Fate::Refused);
        EXPECT_EQ(each.words, "554 5.7.1 not wanted");
    }
}

TEST_F(Smtp, GivesAddressesBeyondAsciiAnEnvelopeOfTheirOwn)
{
    const SmtpServer server;
    const auto fates = send(at(server.port()), {"jörg@x.example", "a@x.example"});
    EXPECT_EQ(fates.at(0).recipient, "jörg@x.example");
    EXPECT_EQ(fates.at(0).fate, Fate::Accepted);
    ASSERT_EQ(server.taken().size(), 2);
    EXPECT_EQ(server.taken()[0].recipients, QStringList{"a@x.example"});
    EXPECT_FALSE(server.taken()[0].options.contains("SMTPUTF8"));
    EXPECT_EQ(server.taken()[1].recipients, QStringList{"jörg@x.example"});
    EXPECT_TRUE(server.taken()[1].options.contains("SMTPUTF8"));
}

TEST_F(Smtp, FailsWithoutAServer)
{
    SmtpServer server;
    server.kill();
    const QString text = failure(at(server.port()));
    EXPECT_TRUE(text.startsWith("The mail server 'localhost' (port PORT), connecting: "))
        << text.toStdString();
}

// A server by the book but for what `answer` says; "close" and "stall" are no answers.
using Answer = std::function<QByteArray(const QByteArray &command)>;

QByteArray usual_answer(const QByteArray &command, const QByteArray &extensions)
{
    const QByteArray verb = command.split(' ').first();
    if (verb == "EHLO")
        return "250-stub\r\n" + extensions + "250 HELP\r\n";
    if (verb == "DATA")
        return "354 go on\r\n";
    return verb == "QUIT" ? "221 bye\r\n" : "250 ok\r\n";
}

bool say(StubLine &line, const QByteArray &answer)
{
    if (answer == "stall")
        line.stall();
    else if (answer != "close")
        line.say(answer);
    return answer != "stall" && answer != "close";
}

void serve(StubLine &line, const Answer &answer, const QByteArray &extensions)
{
    const auto reply = [&](const QByteArray &command) {
        const QByteArray special = answer(command);
        return special.isNull() ? usual_answer(command, extensions) : special;
    };
    bool goes_on =
        say(line, reply("(greeting)") == "250 ok\r\n" ? "220 stub\r\n" : reply("(greeting)"));
    while (goes_on) {
        const QByteArray command = line.hear();
        if (command.isEmpty())
            return;
        const QByteArray said = reply(command);
        goes_on = say(line, said);
        if (said.startsWith("354")) {
            while (line.is_open() && line.hear() != ".") {
            }
            goes_on = say(line, reply("."));
        }
    }
}

StubServer::Script by_the_book(Answer answer, const QByteArray &extensions = "250-PIPELINING\r\n")
{
    return [answer = std::move(answer), extensions](StubLine &line) {
        serve(line, answer, extensions);
    };
}

// Once the server has heard a line to its end, which may be after the client has left.
void wait_for_end_of(const StubServer &server)
{
    const QDeadlineTimer end(5'000);
    const auto ended = [&server] {
        const QList<QByteArray> heard = server.heard();
        return std::ranges::count_if(
            heard, [](const QByteArray &line) { return line.contains(" EHLO "); });
    };
    while (ended() < server.lines() && !end.hasExpired())
        std::this_thread::sleep_for(1ms);
}

QList<QByteArray> commands(const StubServer &server)
{
    wait_for_end_of(server);
    QList<QByteArray> verbs;
    for (const QByteArray &line : server.heard())
        verbs += line.split(' ').value(1);
    return verbs;
}

int count_of(const StubServer &server, const QByteArray &verb)
{
    return static_cast<int>(commands(server).count(verb));
}

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

TEST(SmtpContent, IsStuffedAndEnded)
{
    EXPECT_EQ(smtp_content("a\r\n.\r\n..b\r\nc"), "a\r\n..\r\n...b\r\nc\r\n.\r\n");
    EXPECT_EQ(smtp_content(".\r\n"), "..\r\n.\r\n");
    EXPECT_EQ(smtp_content("a.\r\n"), "a.\r\n.\r\n");
}
} // namespace
