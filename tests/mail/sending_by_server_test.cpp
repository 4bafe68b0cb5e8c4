#include "tests/mail/sending_room.h"
#include "tests/mail/servers/certificates.h"
#include "tests/mail/servers/smtp_server.h"

namespace
{
// Through the server that a profile names.
class SendingByServer : public Sending
{
protected:
    SendingByServer()
    {
        profile.name = "Work";
        profile.outgoing = OutgoingKind::Smtp;
        profile.outgoing_server.host = "localhost";
        profile.outgoing_server.port = server.port();
        profile.outgoing_server.security = LineSecurity::Tls;
        profile.outgoing_server.user = "ann";
        profile.sender_name = "Ann Work";
        profile.sender_address = "ann@bücher.example";
        ProfileFile(home.file("profiles.ini")).save(profile);
        by_server.session().set_UserName("work");
    }

    void send_to(const QStringList &recipients)
    {
        by_server.session().set_DownLoadMail(false);
        by_server.session().SignOn();
        MessageSet &messages = by_server.messages();
        messages.set_MsgIndex(-1);
        messages.set_SessionID(by_server.session().SessionID());
        for (int i = 0; i < recipients.size(); ++i) {
            messages.set_RecipIndex(i);
            messages.set_RecipType(i == 0 ? 1 : 3);
            messages.set_RecipAddress(recipients[i]);
        }
        messages.Send(false);
        by_server.session().SignOff();
    }
    QString failure_of_sending(const QStringList &recipients)
    {
        return failure([&] { send_to(recipients); })
            .replace(QString::number(server.port()), "PORT");
    }

    Certificates certificates;
    SmtpServer server{{"--tls", certificates.certificate_file("good"),
                       certificates.key_file("good"), "--sign-on"}};
    MailProfile profile;
    ProfileMailStore by_server{accounts, inbox_opener({}), &dialog, [this] {
                                   SendingConditions trusting;
                                   trusting.network.authorities = certificates.authority();
                                   return trusting;
                               }()};
};

TEST_F(SendingByServer, UsesTheProfilesSenderAndPassword)
{
    keychain.entries["work sending ann on localhost"] = "s3crét";
    send_to({"ann@example.org", "bob@example.org"});
    ASSERT_EQ(server.taken().size(), 1);
    const TakenMessage taken = server.taken()[0];
    EXPECT_TRUE(taken.is_signed_on);
    EXPECT_EQ(taken.sender, "ann@xn--bcher-kva.example");
    EXPECT_EQ(taken.recipients, (QStringList{"ann@example.org", "bob@example.org"}));
    EXPECT_TRUE(taken.bytes.contains("From: Ann Work <ann@xn--bcher-kva.example>\r\n"));
    EXPECT_TRUE(log_on.reasons.isEmpty());
}

TEST_F(SendingByServer, RemembersAPasswordThatWasTakenWhateverBecameOfTheRecipients)
{
    keychain.entries["work sending ann on localhost"] = "old";
    log_on.passwords = {{"s3crét", true}};
    EXPECT_TRUE(failure_of_sending({"ann@example.org", "bad@x.example"}).contains("for 1 of 2"));
    EXPECT_EQ(server.taken().size(), 1);
    EXPECT_EQ(keychain.entries["work sending ann on localhost"], "s3crét");
}

TEST_F(SendingByServer, FailsWithoutAPassword)
{
    EXPECT_TRUE(failure_of_sending({"ann@example.org"}).startsWith("32000 "));
    keychain.entries["work sending ann on localhost"] = "old";
    EXPECT_EQ(failure_of_sending({"ann@example.org"}),
              "32000 The mail server 'localhost' (port PORT), signing on: 535 5.7.8 Authentication "
              "credentials invalid");
    EXPECT_TRUE(server.taken().isEmpty());
}

TEST_F(SendingByServer, NamesEveryRecipientWhoIsRefused)
{
    keychain.entries["work sending ann on localhost"] = "s3crét";
    EXPECT_EQ(
        failure_of_sending({"ann@example.org", "bad1@x.example", "bob@example.org",
                            "bad2@x.example", "later@x.example"}),
        "32000 The message was taken for 2 of 5 recipients.\n\nRefused:\nbad1@x.example: 550 5.1.1 "
        "<bad1@x.example>: no such user\nbad2@x.example: 550 5.1.1 <bad2@x.example>: no such "
        "user\n\nRefused for the moment:\nlater@x.example: 450 4.2.1 try later");
    EXPECT_EQ(server.taken().size(), 1);
}
} // namespace
