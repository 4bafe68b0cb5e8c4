// What a profile finds when it meets servers: its trial, and the passwords that they refuse.
#include "mail/profile_mail_store.h"
#include "mail/profile_trial.h"
#include "mail/sign_in_refused.h"
#include "tests/mail/mail_texts.h"
#include "tests/mail/servers/smtp_server.h"
#include "tests/mail/servers/stub_server.h"
#include "tests/support/password_fakes.h"
#include "tests/support/private_home.h"

#include <QFile>
#include <gtest/gtest.h>

namespace
{
/// An IMAP inbox of three messages for whoever signs on as "ann" with "right" (LOGIN).
void be_imap_server(StubLine &line)
{
    line.say("* OK ready\r\n");
    while (line.is_open()) {
        const QByteArray command = line.hear();
        const QByteArray tag = command.left(command.indexOf(' '));
        if (command.isEmpty())
            return;
        if (command.contains(" CAPABILITY"))
            line.say("* CAPABILITY IMAP4rev1\r\n" + tag + " OK\r\n");
        else if (command.contains(" LOGIN") && !command.contains("\"right\""))
            line.say(tag + " NO [AUTHENTICATIONFAILED] wrong\r\n");
        else if (command.contains(" EXAMINE"))
            line.say("* 3 EXISTS\r\n" + tag + " OK\r\n");
        else if (command.contains(" FETCH"))
            line.say("* 1 FETCH (UID 1 RFC822.SIZE 9 FLAGS ())\r\n"
                     "* 2 FETCH (UID 2 RFC822.SIZE 9 FLAGS ())\r\n"
                     "* 3 FETCH (UID 3 RFC822.SIZE 9 FLAGS ())\r\n" +
                     tag + " OK\r\n");
        else
            line.say(tag + " OK\r\n");
    }
}

/// A POP3 inbox that refuses everybody.
void refuse_pop3(StubLine &line)
{
    line.say("+OK ready\r\n");
    while (line.is_open()) {
        const QByteArray command = line.hear();
        if (command.isEmpty())
            return;
        line.say(command.startsWith("USER") ? "+OK\r\n" : "-ERR [AUTH] wrong\r\n");
    }
}

/// A POP3 inbox of one message, on a server that names all but TOP.
void be_pop3_server_without_top(StubLine &line)
{
    line.say("+OK ready\r\n");
    while (line.is_open()) {
        const QByteArray command = line.hear();
        if (command.isEmpty())
            return;
        const QByteArray capabilities = "+OK\r\nUIDL\r\n.\r\n";
        line.say(command.startsWith("CAPA")   ? capabilities
                 : command.startsWith("LIST") ? QByteArray("+OK\r\n1 60\r\n.\r\n")
                 : command.startsWith("UIDL") ? QByteArray("+OK\r\n1 a\r\n.\r\n")
                                              : QByteArray("+OK\r\n"));
    }
}

class Trial : public testing::Test
{
protected:
    Trial()
    {
        qputenv("USER", "no-such-user-here");
        profile.name = "Work";
        profile.sender_address = "ann@example.org";
        conditions.patience = std::chrono::seconds(5);
    }

    void read_from(InboxKind kind, quint16 port)
    {
        profile.inbox = kind;
        profile.inbox_server = {"127.0.0.1",          port,  LineSecurity::Plain,
                                SignInKind::Password, "ann", ""};
    }
    void send_to(quint16 port, SignInKind sign_in)
    {
        profile.outgoing = OutgoingKind::Smtp;
        profile.outgoing_server = {"127.0.0.1", port, LineSecurity::Plain, sign_in, "ann", ""};
    }
    TrialReport run(const QString &password)
    {
        return try_profile(profile, inbox_opener(conditions), way_out_trial(conditions),
                           [&password](MailUse) {
                               return Credentials{SignInKind::Password, "ann", password};
                           });
    }

    PrivateHome home;
    MailProfile profile;
    NetworkConditions conditions;
};

TEST_F(Trial, CountsTheMessagesOfAServerAndAsksTheWayOut)
{
    const StubServer inbox(be_imap_server);
    const SmtpServer way_out;
    read_from(InboxKind::Imap, inbox.port());
    send_to(way_out.port(), SignInKind::None);
    const TrialReport report = run("right");
    EXPECT_TRUE(report.all_well);
    EXPECT_EQ(report.text, "Reading: 3 messages in the inbox.\n"
                           "Sending: the mail server 127.0.0.1 takes it.");
    EXPECT_TRUE(way_out.taken().isEmpty());
    for (const QByteArray &heard : inbox.heard())
        EXPECT_FALSE(heard.contains("SELECT") || heard.contains("STORE")) << heard.toStdString();
}

TEST_F(Trial, SaysThatReadingWillLeaveATrace)
{
    const StubServer inbox(be_pop3_server_without_top);
    read_from(InboxKind::Pop3, inbox.port());
    EXPECT_EQ(run("right").text.section('\n', 0, 0),
              "Reading: 1 message in the inbox. This server lacks TOP: reading marks messages as "
              "read for other mail programs, on most servers.");
}

TEST_F(Trial, SaysWhatTheServerSaidAndNoSecret)
{
    const StubServer inbox(be_imap_server);
    read_from(InboxKind::Imap, inbox.port());
    send_to(1, SignInKind::None);
    const TrialReport report = run("wr0ng-s3cret");
    EXPECT_FALSE(report.all_well);
    const QString reading = report.text.section('\n', 0, 0);
    EXPECT_TRUE(reading.startsWith("Reading failed: ")) << reading.toStdString();
    EXPECT_TRUE(reading.contains("127.0.0.1") && reading.contains("[AUTHENTICATIONFAILED] wrong"))
        << reading.toStdString();
    EXPECT_TRUE(report.text.section('\n', 1, 1).startsWith("Sending failed: "));
    EXPECT_FALSE(report.text.contains("wr0ng-s3cret"));
}

TEST_F(Trial, LooksForTheMailProgram)
{
    put_file(home.file("bin/my-sendmail"), "#!/bin/sh\n");
    QFile::setPermissions(home.file("bin/my-sendmail"), QFile::ReadOwner | QFile::ExeOwner);
    profile.sendmail_program = home.file("bin/my-sendmail");
    put_file(home.file("Maildir/new/1.a"), mail("Subject: x"));
    EXPECT_EQ(run("").text, "Reading: 1 message in the inbox.\nSending: the program " +
                                home.file("bin/my-sendmail") + " takes it.");
    profile.sender_address = "no address";
    EXPECT_TRUE(run("").text.section('\n', 1, 1).startsWith("Sending failed: "));
}

class Refusals : public Trial
{
protected:
    void expect_refused(InboxKind kind, const StubServer &server)
    {
        read_from(kind, server.port());
        const auto inbox = inbox_opener(conditions)(profile, [] {
            return Credentials{SignInKind::Password, "ann", "wrong"};
        });
        EXPECT_THROW(inbox->fetch(), SignInRefused);
    }
};

TEST_F(Refusals, AreToldFromOtherFailures)
{
    expect_refused(InboxKind::Imap, StubServer(be_imap_server));
    expect_refused(InboxKind::Pop3, StubServer(refuse_pop3));
    const StubServer closed([](StubLine &line) { line.say("* BYE not now\r\n"); });
    read_from(InboxKind::Imap, closed.port());
    try {
        inbox_opener(conditions)(profile, [] { return Credentials(); })->fetch();
        ADD_FAILURE() << "the server was taken for one that lets us in";
    } catch (const SignInRefused &) {
        ADD_FAILURE() << "a server that is not there now says nothing of the password";
    } catch (const RuntimeError &) {
    }
}

TEST_F(Refusals, AMailServerThatRefusesThePasswordHasItAskedForAgain)
{
    const SmtpServer way_out({"--sign-on"});
    send_to(way_out.port(), SignInKind::Password);
    ProfileFile profiles(home.file("profiles.ini"));
    profiles.save(profile);
    FakeKeychain keychain;
    keychain.entries["work sending ann on 127.0.0.1"] = "old";
    ScriptedLogOn dialog;
    dialog.passwords = {{"s3crét", true}};
    MailAccounts accounts(profiles, keychain, &dialog);
    ProfileMailStore store(accounts, inbox_opener(conditions), nullptr,
                           {conditions, &QDateTime::currentDateTime});
    store.session().set_UserName("work");
    store.session().set_DownLoadMail(false);
    store.session().SignOn();
    store.messages().set_MsgIndex(-1);
    store.messages().set_SessionID(store.session().SessionID());
    store.messages().set_RecipIndex(0);
    store.messages().set_RecipType(1);
    store.messages().set_RecipAddress("bob@example.org");
    store.messages().ResolveName();
    store.messages().set_MsgSubject("Hello");
    store.messages().Send(false);
    ASSERT_EQ(way_out.taken().size(), 1);
    EXPECT_TRUE(way_out.taken()[0].is_signed_on);
    EXPECT_EQ(way_out.taken()[0].sender, "ann@example.org");
    ASSERT_EQ(dialog.reasons.size(), 1);
    EXPECT_TRUE(dialog.reasons[0].startsWith("The server refused the password. It said: "));
    EXPECT_EQ(keychain.entries["work sending ann on 127.0.0.1"], "s3crét");
}
} // namespace
