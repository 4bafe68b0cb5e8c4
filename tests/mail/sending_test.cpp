#include "mail/profile_mail_store.h"
#include "platform/drive_path.h"
#include "tests/mail/mail_texts.h"
#include "tests/mail/servers/certificates.h"
#include "tests/mail/servers/smtp_server.h"
#include "tests/support/password_fakes.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace
{
class ScriptedSendDialog : public SendDialog
{
public:
    SendAnswer answer = SendAnswer::Send;
    QList<OutgoingMessage> shown;
    QStringList ways_out;

    SendAnswer review(const OutgoingMessage &message, const QString &way_out) override
    {
        shown += message;
        ways_out += way_out;
        return answer;
    }
};

// A home without an inbox, and a mail program first in PATH that notes down what it is given.
class Sending : public testing::Test
{
protected:
    Sending()
    {
        qputenv("PATH", QFile::encodeName(home.file("bin")) + ":/usr/bin:/bin");
        qputenv("USER", "no-such-user-here");
        set_program("exit 0");
    }

    void set_program(const QByteArray &rest) const
    {
        const QString path = home.file("bin/sendmail");
        put_file(path, "#!/bin/sh\ncd '" + QFile::encodeName(home.path()) +
                           "'\nprintf '%s\\n' \"$@\" >>args\ncat >>input\n" + rest + "\n");
        QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QByteArray noted(const QString &name) const
    {
        QFile file(home.file(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "(none)";
    }
    bool is_sent() const { return QFile::exists(home.file("input")); }

    // The order of the sending panel.
    void send(const QStringList &recipients, bool show_dialog = false,
              const QString &attachment = {})
    {
        MailSession &session = store.session();
        session.set_DownLoadMail(false);
        session.SignOn();
        MessageSet &messages = store.messages();
        messages.set_MsgIndex(-1);
        messages.set_SessionID(session.SessionID());
        for (int i = 0; i < recipients.size(); ++i) {
            messages.set_RecipIndex(i);
            messages.set_RecipType(i == 0 ? 1 : 3);
            messages.set_RecipAddress(recipients[i]);
            messages.ResolveName();
        }
        messages.set_MsgSubject("Hello");
        messages.set_MsgNoteText("Dear all\r\n");
        if (!attachment.isEmpty())
            messages.set_AttachmentPathName(attachment);
        messages.Send(show_dialog);
        session.SignOff();
        messages.Copy();
    }
    template <typename Action>
    QString failure(Action action)
    {
        try {
            action();
        } catch (const RuntimeError &error) {
            return QString::number(error.number()) + ' ' + error.description();
        }
        return "none";
    }

    PrivateHome home;
    ScriptedLogOn log_on;
    ScriptedSendDialog dialog;
    FakeKeychain keychain;
    MailAccounts accounts{ProfileFile(home.file("profiles.ini")), keychain, &log_on};
    ProfileMailStore store{accounts, inbox_opener({}), &dialog};
};

TEST_F(Sending, GoesOutWithoutAnInboxOnTheMachine)
{
    send({"ann@example.org", " bob@example.org", " ", "cid@example.org "});
    const QByteArray input = noted("input");
    EXPECT_TRUE(noted("args").endsWith("--\nann@example.org\nbob@example.org\ncid@example.org\n"))
        << noted("args").constData();
    EXPECT_TRUE(input.contains("\nTo: ann@example.org\n"));
    EXPECT_FALSE(input.contains("bob@") || input.contains("cid@"));
    EXPECT_TRUE(input.contains("\nSubject: Hello\n"));
    EXPECT_TRUE(input.endsWith("\n\nDear all\n"));
    EXPECT_TRUE(dialog.shown.isEmpty());
}

TEST_F(Sending, ComesFromTheUsersLocalAddress)
{
    send({"ann@example.org"});
    const QStringList arguments = QString::fromUtf8(noted("args")).split('\n');
    ASSERT_EQ(arguments.value(1), "-f");
    EXPECT_EQ(arguments.value(2).section('@', 0, 0),
              QString::fromLocal8Bit(getpwuid(geteuid())->pw_name));
    const QByteArray input = noted("input");
    EXPECT_TRUE(input.contains("From: " + arguments.value(2).toUtf8() + "\n")) << input.constData();
    // Every message has an id of its own, at the sender's domain.
    const auto id = QRegularExpression("\nMessage-Id: <([0-9a-f]{32})@([^>]+)>\n")
                        .match(QString::fromLatin1(input));
    EXPECT_EQ(id.captured(2), arguments.value(2).section('@', 1));
    QFile::remove(home.file("input"));
    send({"ann@example.org"});
    EXPECT_FALSE(noted("input").contains(id.captured(1).toLatin1()));
}

TEST_F(Sending, LeavesOutBlankRecipientsWhereverTheyStand)
{
    send({"", "ann@example.org"});
    EXPECT_TRUE(noted("args").endsWith("--\nann@example.org\n"));
    EXPECT_TRUE(noted("input").contains("\nTo: undisclosed-recipients: ;\n"));
}

TEST_F(Sending, NeedsSomebodyToSendTo)
{
    EXPECT_EQ(failure([&] {
                  send({" ", ""});
              }),
              "32000 The message has no recipient. Nothing was sent.");
    EXPECT_FALSE(is_sent());
}

TEST_F(Sending, StopsAtARecipientThatIsNoneBeforeAnythingIsSent)
{
    EXPECT_EQ(failure([&] {
                  send({"ann@example.org", "bob@example.org\r\nword"});
              }),
              "32000 The recipient \"bob@example.org\\r\\nword\" cannot be used: it holds a line "
              "break or another control character. Nothing was sent.");
    EXPECT_EQ(failure([&] {
                  send({"ann@example.org", "word"});
              }),
              "32000 The recipient \"word\" cannot be used: it is not an e-mail address. Nothing "
              "was sent.");
    EXPECT_FALSE(is_sent());
}

TEST_F(Sending, TakesAnAttachmentInDriveNotation)
{
    put_file(data_folder() + "/Ostrix/List of May.csv", "a,b\n");
    send({"ann@example.org"}, false, "c:\\ostrix\\list of may.csv");
    EXPECT_TRUE(noted("input").contains("filename=\"List of May.csv\""))
        << noted("input").constData();
    EXPECT_TRUE(noted("input").contains(QByteArray("a,b\n").toBase64()));
}

TEST_F(Sending, FailsForAnAttachmentThatIsNone)
{
    QDir().mkpath(home.file("folder"));
    const auto failure_for = [&](const QString &path) {
        return failure([&] { send({"ann@example.org"}, false, path); });
    };
    EXPECT_EQ(failure_for("C:\\Ostrix\\none.txt"),
              "32000 The attachment \"C:\\Ostrix\\none.txt\" is not there. Nothing was sent.");
    EXPECT_EQ(failure_for(home.file("folder")), "32000 The attachment \"" + home.file("folder") +
                                                    "\" is not a file. Nothing was sent.");
    EXPECT_EQ(failure_for("/dev/zero"),
              "32000 The attachment \"/dev/zero\" is not a file. Nothing was sent.");
    EXPECT_TRUE(
        failure_for("D:\\a.txt").startsWith("32000 The attachment \"D:\\a.txt\" cannot be found"));
    EXPECT_FALSE(is_sent());
}

TEST_F(Sending, FailsForAnAttachmentThatCannotBeRead)
{
    // A file whose first byte nobody can read.
    EXPECT_EQ(
        failure([&] { send({"ann@example.org"}, false, "/proc/self/mem"); }),
        "32000 The attachment \"/proc/self/mem\" cannot be read: Input/output error. Nothing was "
        "sent.");
    EXPECT_FALSE(is_sent());
}

TEST_F(Sending, NamesWhoDidNotGetIt)
{
    set_program("echo 'no such user' >&2; exit 67");
    EXPECT_EQ(failure([&] {
                  send({"ann@example.org", "bob@example.org"});
              }),
              "32000 The message was taken for 0 of 2 recipients.\n\nRefused:\nann@example.org, "
              "bob@example.org: exit code 67: no such user");
}

TEST_F(Sending, ShowsTheMessageWhenAsked)
{
    put_file(home.file("a.txt"), "12345");
    send({"ann@example.org", "bob@example.org"}, true, home.file("a.txt"));
    ASSERT_EQ(dialog.shown.size(), 1);
    const OutgoingMessage &shown = dialog.shown[0];
    EXPECT_EQ(shown.to, QStringList{"ann@example.org"});
    EXPECT_EQ(shown.blind_copies, QStringList{"bob@example.org"});
    EXPECT_EQ(shown.subject, "Hello");
    EXPECT_EQ(shown.text, "Dear all\r\n");
    ASSERT_TRUE(shown.attachment);
    EXPECT_EQ(shown.attachment->content, "12345");
    EXPECT_EQ(dialog.ways_out, QStringList{"the program " + home.file("bin/sendmail")});
    EXPECT_TRUE(is_sent());
}

TEST_F(Sending, IsCancelledByThePersonWhoIsShownIt)
{
    dialog.answer = SendAnswer::Cancel;
    EXPECT_EQ(failure([&] { send({"ann@example.org"}, true); }),
              "32001 The message was cancelled by the user. Nothing was sent.");
    EXPECT_FALSE(is_sent());
}

TEST_F(Sending, ShowsNothingToNobody)
{
    const QString nobody = "32000 The message was to be shown before it is sent, but nobody is "
                           "there to see it. Nothing was sent.";
    dialog.answer = SendAnswer::Nobody;
    EXPECT_EQ(failure([&] { send({"ann@example.org"}, true); }), nobody);
    ProfileMailStore lonely(accounts, inbox_opener({}));
    lonely.session().set_DownLoadMail(false);
    lonely.session().SignOn();
    lonely.messages().set_MsgIndex(-1);
    lonely.messages().set_SessionID(lonely.session().SessionID());
    lonely.messages().set_RecipIndex(0);
    lonely.messages().set_RecipAddress("ann@example.org");
    EXPECT_EQ(failure([&] { lonely.messages().Send(true); }), nobody);
    EXPECT_FALSE(is_sent());
}

TEST_F(Sending, HappensOnce)
{
    send({"ann@example.org"});
    store.session().set_DownLoadMail(false);
    store.session().SignOn();
    store.messages().set_SessionID(store.session().SessionID());
    EXPECT_EQ(failure([&] { store.messages().Send(false); }),
              "32000 No new message is current in the message set.");
    EXPECT_EQ(noted("input").count("Message-Id:"), 1);
}

TEST_F(Sending, StartsWithAnEmptyMessageEachTime)
{
    MessageSet &messages = store.messages();
    store.session().set_DownLoadMail(false);
    store.session().SignOn();
    messages.set_MsgIndex(-1);
    messages.set_RecipIndex(0);
    messages.set_RecipAddress("ann@example.org");
    messages.set_MsgIndex(-1);
    messages.set_SessionID(store.session().SessionID());
    EXPECT_EQ(failure([&] { messages.Send(false); }),
              "32000 The message has no recipient. Nothing was sent.");
}

TEST_F(Sending, ResolvesWhatNobodyAskedToBeResolved)
{
    MessageSet &messages = store.messages();
    store.session().set_DownLoadMail(false);
    store.session().SignOn();
    messages.set_MsgIndex(-1);
    messages.set_SessionID(store.session().SessionID());
    messages.set_RecipIndex(0);
    messages.set_RecipAddress("a\r\nb@example.org");
    EXPECT_TRUE(failure([&] { messages.Send(false); }).contains("a\\r\\nb@example.org"));
    EXPECT_FALSE(is_sent());
}

TEST_F(Sending, NeedsItsStepsInOrder)
{
    MessageSet &messages = store.messages();
    const QString no_draft = "32000 No new message is current in the message set.";
    messages.Copy(); // also without a session
    EXPECT_EQ(failure([&] { messages.set_RecipIndex(0); }), no_draft);
    EXPECT_EQ(failure([&] { messages.set_MsgSubject("x"); }), no_draft);
    messages.set_MsgIndex(-1); // the compose buffer needs no session
    EXPECT_EQ(failure([&] { messages.set_RecipType(1); }),
              "32000 No recipient is current in the message.");
    EXPECT_EQ(failure([&] { messages.set_RecipIndex(1); }),
              "9 There is no recipient number 1: the message has 0.");
    EXPECT_EQ(failure([&] { messages.set_RecipIndex(-1); }),
              "9 There is no recipient number -1: the message has 0.");
    messages.set_RecipIndex(0);
    EXPECT_EQ(failure([&] { messages.set_RecipType(2); }), "32000 There is no recipient type 2.");
    EXPECT_EQ(failure([&] { messages.Send(false); }),
              "32000 The message set is not bound to an open mail session.");
}

TEST_F(Sending, ChangesARecipientThatWasThere)
{
    MessageSet &messages = store.messages();
    store.session().set_DownLoadMail(false);
    store.session().SignOn();
    messages.set_MsgIndex(-1);
    messages.set_SessionID(store.session().SessionID());
    for (const int index : {0, 1, 0}) {
        messages.set_RecipIndex(index);
        messages.set_RecipAddress(QString("n%1@example.org").arg(index));
    }
    messages.set_RecipAddress("other@example.org");
    messages.Send(false);
    EXPECT_TRUE(noted("args").endsWith("--\nother@example.org\nn1@example.org\n"));
}

TEST_F(Sending, ReachesTwoThousand)
{
    QStringList recipients;
    for (int i = 0; i < 2'000; ++i)
        recipients += QString("n%1@example.org").arg(i);
    send(recipients);
    QStringList reached;
    for (const QString &line : QString::fromUtf8(noted("args")).split('\n')) {
        if (line.contains("@example.org"))
            reached += line;
    }
    EXPECT_EQ(reached, recipients);
}

TEST_F(Sending, NeedsAMailProgram)
{
    MailProfile profile; // of a name that no machine has
    profile.name = "Work";
    profile.sender_address = "ann@example.org";
    profile.sendmail_program = "no-such-mail-program";
    ProfileFile(home.file("profiles.ini")).save(profile);
    store.session().set_UserName("Work");
    EXPECT_TRUE(
        failure([&] {
            send({"ann@example.org"});
        }).startsWith("32000 There is no program \"no-such-mail-program\" on this machine"));
    EXPECT_FALSE(is_sent());
}

TEST_F(Sending, LeavesTheInboxToTheNextSession)
{
    send({"ann@example.org"});
    EXPECT_TRUE(
        failure([&] { store.session().SignOn(); }).startsWith("32000 No local inbox was found."));
}
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
                                   trusting.network.also_trusted = certificates.authority();
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
