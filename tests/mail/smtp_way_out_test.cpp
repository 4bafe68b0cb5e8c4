#include "mail/smtp_delivery.h"
#include "tests/mail/servers/certificates.h"
#include "tests/mail/servers/smtp_server.h"
#include "tests/mail/smtp_room.h"

namespace
{
using namespace std::chrono_literals;

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

TEST(SmtpContent, IsStuffedAndEnded)
{
    EXPECT_EQ(smtp_content("a\r\n.\r\n..b\r\nc"), "a\r\n..\r\n...b\r\nc\r\n.\r\n");
    EXPECT_EQ(smtp_content(".\r\n"), "..\r\n.\r\n");
    EXPECT_EQ(smtp_content("a.\r\n"), "a.\r\n.\r\n");
}
} // namespace
