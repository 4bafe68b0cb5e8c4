#include "mail/server_connection.h"
#include "mail/sign_in_refused.h"
#include "platform/runtime_error.h"
#include "tests/mail/servers/certificates.h"
#include "tests/mail/servers/stub_server.h"
#include "tests/support/print_qt.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QHostAddress>
#include <gtest/gtest.h>

namespace
{
using namespace std::chrono_literals;

class Line : public testing::Test
{
protected:
    NetworkConditions conditions(std::chrono::milliseconds patience = 3s)
    {
        return {patience, [this] { ++turns; }, certificates.authority()};
    }

    static MailServer at(quint16 port, LineSecurity security, const QString &host = "localhost")
    {
        MailServer server;
        server.host = host;
        server.port = port;
        server.security = security;
        return server;
    }

    // Lets a client do something at a server with this script; the failure's text, if any.
    template <typename Step>
    QString failure(const StubServer &server, LineSecurity security, Step &&step,
                    std::chrono::milliseconds patience = 3s, const QString &host = "localhost")
    {
        ServerConnection connection(at(server.port(), security, host), conditions(patience));
        try {
            connection.open();
            step(connection);
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), error_number::mail_failure);
            return without_port(error.description(), server.port());
        }
        return QStringLiteral("none");
    }

    static QString without_port(QString text, quint16 port)
    {
        return text.replace(QString::number(port), QStringLiteral("PORT"));
    }

    bool encrypt(StubLine &line, const QString &name) const
    {
        return line.encrypt(certificates.certificate_file(name), certificates.key_file(name));
    }

    Certificates certificates;
    int turns = 0;
};

const auto nothing = [](ServerConnection &) {};
const auto read_a_line = [](ServerConnection &line) { line.read_line(); };

TEST_F(Line, CarriesLinesAndBytesInPlainText)
{
    const StubServer server([](StubLine &line) {
        line.say("hello\r\nno cr\n\r\n12345678");
        line.answer("you said TAG\r\n");
    });
    ServerConnection line(at(server.port(), LineSecurity::Plain), conditions());
    line.open();
    EXPECT_EQ(line.read_line(), "hello");
    EXPECT_EQ(line.read_line(), "no cr");
    EXPECT_EQ(line.read_line(), "");
    EXPECT_EQ(line.read_bytes(5), "12345");
    EXPECT_EQ(line.read_bytes(3), "678");
    line.write("this\r\n");
    EXPECT_EQ(line.read_line(), "you said this");
    EXPECT_EQ(line.received(), 38);
    EXPECT_FALSE(line.is_encrypted());
    EXPECT_TRUE(line.may_carry_secrets()); // the server is this machine
}

TEST_F(Line, ReadsALongLineInPieces)
{
    const StubServer server([](StubLine &line) { line.say("123456\r\n"); });
    ServerConnection line(at(server.port(), LineSecurity::Plain), conditions());
    line.open();
    EXPECT_EQ(line.read_piece_of_line(4), "1234");
    EXPECT_EQ(line.read_piece_of_line(4), "56\r\n");
}

TEST_F(Line, IsEncryptedFromTheStart)
{
    const StubServer server([this](StubLine &line) {
        encrypt(line, "good");
        line.say("hello\r\n");
        line.hear();
    });
    ServerConnection line(at(server.port(), LineSecurity::Tls), conditions());
    line.open();
    EXPECT_TRUE(line.is_encrypted());
    EXPECT_TRUE(line.may_carry_secrets());
    EXPECT_EQ(line.read_line(), "hello");
    line.write("quit\r\n");
    line.close();
}

TEST_F(Line, ChecksTheCertificateOfAnAddressToo)
{
    const StubServer good([this](StubLine &line) { encrypt(line, "good"); });
    EXPECT_EQ(failure(good, LineSecurity::Tls, nothing, 3s, "127.0.0.1"), "none");
    const StubServer wrong([this](StubLine &line) { encrypt(line, "wrong"); });
    EXPECT_TRUE(failure(wrong, LineSecurity::Tls, nothing, 3s, "127.0.0.1")
                    .contains("The host name did not match"));
}

TEST_F(Line, IsEncryptedOnRequest)
{
    const StubServer server([this](StubLine &line) {
        line.say("ready\r\n");
        line.answer("go ahead\r\n");
        encrypt(line, "good");
        line.say("now in private\r\n");
    });
    ServerConnection line(at(server.port(), LineSecurity::StartTls), conditions());
    line.open();
    EXPECT_EQ(line.read_line(), "ready");
    EXPECT_FALSE(line.is_encrypted());
    line.write("STARTTLS\r\n");
    EXPECT_EQ(line.read_line(), "go ahead");
    line.start_tls();
    EXPECT_TRUE(line.is_encrypted());
    EXPECT_EQ(line.read_line(), "now in private");
}

TEST_F(Line, RefusesWhatIsSlippedInBeforeTheEncryption)
{
    const StubServer server([this](StubLine &line) {
        line.answer("go ahead\r\ninjected\r\n");
        encrypt(line, "good");
    });
    const auto start_tls = [](ServerConnection &line) {
        line.write("STARTTLS\r\n");
        line.read_line();
        line.start_tls();
    };
    EXPECT_EQ(failure(server, LineSecurity::StartTls, start_tls),
              "The mail server 'localhost' (port PORT), encrypting the line: the server went on in "
              "plain text after its go-ahead");
}

struct BadCertificate
{
    const char *name;
    const char *reason;
};

class BadCertificates : public Line, public testing::WithParamInterface<BadCertificate>
{
};

TEST_P(BadCertificates, AreRefused)
{
    const StubServer server([this](StubLine &line) {
        encrypt(line, GetParam().name);
        line.say("hello\r\n");
        line.hear();
    });
    EXPECT_EQ(failure(server, LineSecurity::Tls, read_a_line),
              QStringLiteral("The mail server 'localhost' (port PORT), encrypting the line: the "
                             "server's certificate cannot be trusted: ") +
                  GetParam().reason);
    EXPECT_EQ(server.heard(), QList<QByteArray>());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, BadCertificates,
    testing::Values(
        BadCertificate{"wrong",
                       "The host name did not match any of the valid hosts for this certificate"},
        BadCertificate{"self", "The certificate is self-signed, and untrusted"},
        BadCertificate{"expired", "The certificate has expired"},
        BadCertificate{"forged", "The issuer certificate of a locally looked up certificate could "
                                 "not be found / No certificates could be verified"}));

TEST_F(Line, IsNotTrustedWithoutTheTestsAuthority)
{
    const StubServer server([this](StubLine &line) { encrypt(line, "good"); });
    ServerConnection line(at(server.port(), LineSecurity::Tls), {3s, [] {}, {}});
    EXPECT_THROW(line.open(), RuntimeError);
}

TEST_F(Line, GivesUpASilentServerAndPaintsMeanwhile)
{
    const StubServer server([](StubLine &line) { line.stall(); });
    const auto log_in = [](ServerConnection &line) {
        line.begin("logging in");
        line.read_line();
    };
    EXPECT_EQ(failure(server, LineSecurity::Plain, log_in, 300ms),
              "The mail server 'localhost' (port PORT), logging in: the server did not answer "
              "within 0.3 seconds");
    EXPECT_GE(turns, 3);
    EXPECT_LE(turns, 12);
}

TEST_F(Line, GivesUpAServerThatIsSilentInTheHandshake)
{
    const StubServer server([](StubLine &line) { line.stall(); });
    EXPECT_EQ(failure(server, LineSecurity::Tls, nothing, 300ms),
              "The mail server 'localhost' (port PORT), encrypting the line: the server did not "
              "answer within 0.3 seconds");
    EXPECT_GE(turns, 3);
}

TEST_F(Line, GivesUpAServerThatSendsAByteNowAndThen)
{
    const StubServer server([](StubLine &line) {
        while (line.is_open()) {
            line.say("x");
            std::this_thread::sleep_for(50ms);
        }
    });
    EXPECT_TRUE(failure(server, LineSecurity::Plain, read_a_line, 300ms)
                    .endsWith("the server did not answer within 0.3 seconds"));
}

TEST_F(Line, GivesUpAnAnswerThatGoesOnLineByLine)
{
    const StubServer server([](StubLine &line) {
        while (line.is_open()) {
            line.say("* OK still here\r\n");
            std::this_thread::sleep_for(20ms);
        }
    });
    const auto read_all = [](ServerConnection &line) {
        while (true)
            line.read_line();
    };
    EXPECT_TRUE(failure(server, LineSecurity::Plain, read_all, 150ms)
                    .endsWith("the server did not end its answer within 1.5 seconds"));
    const auto converse = [](ServerConnection &line) { // each command has its own time
        line.begin("conversing");
        const QDeadlineTimer end(1'800);
        while (!end.hasExpired()) {
            line.write("more\r\n");
            line.read_line();
        }
    };
    EXPECT_EQ(failure(server, LineSecurity::Plain, converse, 150ms), "none");
}

TEST_F(Line, GivesAShortStepOneTimeWhateverComes)
{
    const StubServer server([](StubLine &line) {
        const QByteArray much = QByteArray("* OK still here\r\n").repeated(250);
        while (line.is_open()) {
            line.say(much);
            std::this_thread::sleep_for(20ms);
        }
    });
    const auto converse = [](ServerConnection &line) {
        line.begin("doing it", ServerConnection::StepLength::Short);
        while (true) {
            line.write("more\r\n");
            line.read_line();
        }
    };
    EXPECT_EQ(
        failure(server, LineSecurity::Plain, converse, 150ms),
        "The mail server 'localhost' (port PORT), doing it: the server did not end its answer "
        "within 1.5 seconds");
    const auto take_leave = [](ServerConnection &line) {
        line.begin("doing it");
        line.hurry(150ms);
        while (true)
            line.read_line();
    };
    EXPECT_TRUE(failure(server, LineSecurity::Plain, take_leave, 5s)
                    .endsWith("did not end its answer within 1.5 seconds"));
}

TEST_F(Line, TakesNoFloodInAShortStep)
{
    const StubServer server([](StubLine &line) {
        const QByteArray much = QByteArray("* OK still here\r\n").repeated(4'000);
        while (line.is_open())
            line.say(much);
    });
    qint64 received = 0;
    const auto read_on = [&received](ServerConnection &line) {
        line.begin("doing it", ServerConnection::StepLength::Short);
        while (true) {
            line.read_line();
            received = line.received();
        }
    };
    EXPECT_EQ(
        failure(server, LineSecurity::Plain, read_on),
        "The mail server 'localhost' (port PORT), doing it: the server's answer does not end");
    EXPECT_LT(received, 3 * 1024 * 1024);
}

TEST_F(Line, ReadsMoreThanItHoldsAtATime)
{
    const QByteArray bytes = QByteArray("0123456789abcde\n").repeated(200'000);
    for (const LineSecurity security : {LineSecurity::Plain, LineSecurity::Tls}) {
        const StubServer server([&](StubLine &line) {
            if (security == LineSecurity::Tls)
                encrypt(line, "good");
            line.say(bytes);
            line.say("end\r\n");
            line.hear();
        });
        ServerConnection line(at(server.port(), security), conditions());
        line.open();
        line.begin("reading");
        std::this_thread::sleep_for(100ms); // the server is ahead
        EXPECT_EQ(line.read_bytes(16), bytes.first(16));
        EXPECT_TRUE(line.read_bytes(bytes.size() - 16) == bytes.sliced(16));
        EXPECT_EQ(line.read_line(), "end");
    }
}

TEST_F(Line, SaysThatTheServerSpeaksNoTls)
{
    const StubServer server([](StubLine &line) {
        line.say("* OK hello in plain text\r\n");
        line.stall();
    });
    EXPECT_TRUE(failure(server, LineSecurity::Tls, nothing)
                    .startsWith("The mail server 'localhost' (port PORT), encrypting the line: "
                                "Error during SSL handshake"));
}

TEST_F(Line, TellsALostLineFromOtherFailures)
{
    const StubServer server([](StubLine &line) { line.say("half a li"); });
    ServerConnection line(at(server.port(), LineSecurity::Plain), conditions());
    line.open();
    line.begin("reading the list");
    try {
        line.read_line();
        FAIL() << "read half a line";
    } catch (const LineLost &error) {
        EXPECT_EQ(without_port(error.description(), server.port()),
                  "The mail server 'localhost' (port PORT), reading the list: the server closed "
                  "the line");
    }
    EXPECT_THROW(line.write("again\r\n"), LineLost);
}

TEST_F(Line, NoticesALineCutInTheHandshake)
{
    const StubServer server([](StubLine &) {});
    EXPECT_TRUE(failure(server, LineSecurity::Tls, nothing)
                    .startsWith("The mail server 'localhost' (port PORT), encrypting the line: "));
}

TEST_F(Line, RefusesAnEndlessLine)
{
    const StubServer server([](StubLine &line) { line.say(QByteArray(70 * 1024, 'x')); });
    EXPECT_TRUE(failure(server, LineSecurity::Plain, read_a_line)
                    .endsWith("the server sent a line of more than 65536 bytes"));
}

// A port on which nobody listens any longer.
quint16 closed_port()
{
    return StubServer([](StubLine &) {}).port();
}

TEST_F(Line, SaysWhyNoLineCanBeOpened)
{
    const auto opening = [this](const QString &host, quint16 port) {
        try {
            ServerConnection(at(port, LineSecurity::Plain, host), conditions()).open();
        } catch (const RuntimeError &error) {
            return without_port(error.description(), port);
        }
        return QStringLiteral("none");
    };
    EXPECT_EQ(opening("localhost", closed_port()),
              "The mail server 'localhost' (port PORT), connecting: Connection refused");
    EXPECT_EQ(opening("no.such.host.invalid", 1143).section(", ", 1).section(": ", 0, 0),
              "connecting");
    EXPECT_EQ(opening("two words", 1143),
              "The mail server 'two words' (port PORT), connecting: this is no name of a host");
    EXPECT_EQ(opening("", 1143),
              "The mail server '' (port PORT), connecting: this is no name of a host");
}

TEST_F(Line, GivesUpAnAddressThatDoesNotAnswer)
{
    // An address for documentation (RFC 5737): packets to it get lost, or there is no way to it.
    ServerConnection line(at(1143, LineSecurity::Plain, "192.0.2.1"), conditions(200ms));
    QElapsedTimer time;
    time.start();
    EXPECT_THROW(line.open(), RuntimeError);
    EXPECT_LT(time.elapsed(), 2'000);
}

TEST_F(Line, ShowsTheServersWordsWithoutControlCharactersAndInShort)
{
    const ServerConnection line(at(143, LineSecurity::Plain), conditions());
    const auto shown = [&line](const QString &words) {
        try {
            line.fail("logging in", words);
        } catch (const RuntimeError &error) {
            return error.description().section(": ", 1);
        }
    };
    EXPECT_EQ(shown(u"a\u0007b\r\n\u202Ec\t d"_qs), "a b c d");
    EXPECT_EQ(shown(QString(400, 'x')), QString(300, 'x') + u" …"_qs);
}

TEST_F(Line, NeverShowsASecretThatTheServerRepeats)
{
    ServerConnection line(at(143, LineSecurity::Plain), conditions());
    line.hide("s3cret");
    line.hide("");
    try {
        line.fail("logging in", "unknown command: LOGIN ann s3cret");
        FAIL() << "came back";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.description(), "The mail server 'localhost' (port 143), logging in: its "
                                       "answer repeats a secret and is not shown");
    }
}

TEST_F(Line, NeverShowsAPieceOfASecret)
{
    ServerConnection line(at(143, LineSecurity::Plain), conditions());
    line.hide("a-Long-p\xC3\xA4ssword");
    line.hide("AGFubgBhLUxvbmctcMOkc3N3b3Jk");
    line.hide("abc");
    const QString hidden = "its answer repeats a secret and is not shown";
    for (const QString words :
         {"unknown: PASS a-long", "unknown: PASS A-LONG-P\u00C4SS", "unknown: AUTH PLAIN AGFubg",
          "said agfubgbhluxv", "ssword", "an ABC"})
        EXPECT_EQ(line.without_secrets(words), hidden) << words.toStdString();
    for (const QString words : {"wrong pass word", "unknown: AUTH PLAIN AGFub", "", "a-lon ab c"})
        EXPECT_EQ(line.without_secrets(words), words) << words.toStdString();
}

TEST(RefusedSignOns, MayBeForAnotherReasonThanTheCredentials)
{
    for (const char *words :
         {"", "no", "[AUTHENTICATIONFAILED] no", "[AUTH] no", "busy [LIMIT]", "[EXPIRED] no"})
        EXPECT_TRUE(blames_credentials(words)) << words;
    for (const char *words : {"[UNAVAILABLE] later", "[inuse] x", "[LIMIT]", "[SERVERBUG] x",
                              "[IN-USE] x", "[SYS/TEMP] x", "[Sys/Perm] x", "[LOGIN-DELAY] x"})
        EXPECT_FALSE(blames_credentials(words)) << words;
}

TEST(ThisMachine, IsWhatALineNeedNotLeave)
{
    const auto here = [](const QString &peer, const QString &local) {
        return is_this_machine(QHostAddress(peer), QHostAddress(local));
    };
    EXPECT_TRUE(here("127.0.0.1", "127.0.0.1"));
    EXPECT_TRUE(here("127.0.0.2", "127.0.0.1"));
    EXPECT_TRUE(here("::1", "::1"));
    EXPECT_TRUE(here("::ffff:127.0.0.1", "::ffff:127.0.0.1"));
    EXPECT_TRUE(here("192.0.2.7", "192.0.2.7"));
    EXPECT_FALSE(here("192.0.2.7", "192.0.2.8"));
    EXPECT_FALSE(here("10.0.0.1", "10.0.0.2"));
    EXPECT_FALSE(here("", "")); // no line at all
}

TEST_F(Line, SendsALotAndReadsWhatComesMeanwhile)
{
    const StubServer server([](StubLine &line) {
        for (int i = 0; i < 200; ++i)
            line.answer("got it\r\n");
    });
    ServerConnection line(at(server.port(), LineSecurity::Plain), conditions());
    line.open();
    const QByteArray text = QByteArray(20'000, 'x') + "\r\n";
    for (int i = 0; i < 200; ++i)
        line.write(text);
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(line.read_line(), "got it");
}
} // namespace
