#include "mail/local_inbox.h"
#include "mail/profile_mail_store.h"
#include "mail/sign_in_refused.h"
#include "platform/drive_path.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/failure_text.h"
#include "tests/support/password_fakes.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace
{
class LocalStore : public testing::Test
{
protected:
    LocalStore() { qputenv("USER", "no-such-user-here"); }

    void open()
    {
        store.session().SignOn();
        store.messages().set_SessionID(store.session().SessionID());
        store.messages().Fetch();
    }
    void put_maildir(const QString &folder, const QByteArray &subject) const
    {
        put_file(folder + "/new/1.a", mail("From: Ann <ann@example.org>\nSubject: " + subject +
                                           "\nDate: 2 Jan 2006 10:20:30 +0100"));
    }
    void put_mbox(const QString &file, const QByteArray &subject) const
    {
        put_file(file, "From x Mon Jan  2 10:20:30 2006\n" + mail("Subject: " + subject));
    }
    QString first_subject()
    {
        open();
        store.messages().set_MsgIndex(0);
        return store.messages().MsgSubject();
    }

    void answer(const QString &inbox) { dialog.accounts = {{{}, inbox}}; }

    PrivateHome home;
    ProfileFile profiles{home.file("profiles.ini")};
    FakeKeychain keychain;
    ScriptedLogOn dialog;
    MailAccounts accounts{profiles, keychain, &dialog};
    ProfileMailStore store{accounts, inbox_opener({})};
};

TEST_F(LocalStore, ReadsAWholeInboxInTheOrderOfARun)
{
    put_maildir(home.file("Maildir"), "Hello");
    store.session().set_UserName("");
    EXPECT_EQ(store.session().UserName(), "");
    store.session().set_DownLoadMail(false);
    EXPECT_EQ(store.session().SessionID(), 0);
    open();
    EXPECT_NE(store.session().SessionID(), 0);
    ASSERT_EQ(store.messages().MsgCount(), 1);
    store.messages().set_MsgIndex(0);
    EXPECT_EQ(store.messages().MsgOrigAddress(), "ann@example.org");
    EXPECT_EQ(store.messages().MsgSubject(), "Hello");
    EXPECT_EQ(store.messages().MsgDateReceived(), "2006-01-02 10:20:30");
    EXPECT_EQ(store.messages().MsgOrigDisplayName(), "Ann");
    EXPECT_EQ(store.messages().MsgNoteText(), "body\r\n");
    store.session().SignOff();
    EXPECT_EQ(store.session().SessionID(), 0);
    EXPECT_EQ(dialog.reasons, QStringList());
}

TEST_F(LocalStore, LooksInMailThenInTheMaildir)
{
    put_maildir(home.file("Maildir"), "maildir");
    qputenv("MAIL", QFile::encodeName(home.file("spool")));
    EXPECT_EQ(first_subject(), "maildir"); // $MAIL names nothing yet
    put_mbox(home.file("spool"), "spool");
    EXPECT_EQ(first_subject(), "spool");
    EXPECT_EQ(local_inbox_places(),
              (QStringList{home.file("spool"), QDir::home().filePath("Maildir"),
                           "/var/mail/no-such-user-here"}));
}

TEST_F(LocalStore, LooksInMailInDriveNotation)
{
    put_maildir(home.file("Maildir"), "maildir");
    put_mbox(data_folder() + "/Mail/inbox", "drive");
    qputenv("MAIL", "C:\\mail\\Inbox");
    EXPECT_EQ(first_subject(), "drive");
    qputenv("MAIL", "D:\\mail\\Inbox");
    EXPECT_EQ(first_subject(), "maildir"); // there is no such drive
}

TEST_F(LocalStore, AUserNameIsNoPath)
{
    qputenv("USER", "../../etc/passwd");
    EXPECT_EQ(local_inbox_places(), QStringList{QDir::home().filePath("Maildir")});
}

TEST_F(LocalStore, TellsMaildirsFromMailboxFiles)
{
    QDir().mkpath(home.file("dir/cur"));
    QDir().mkpath(home.file("plain"));
    put_file(home.file("file"), "");
    EXPECT_EQ(local_inbox_kind(home.file("dir")), LocalInboxKind::Maildir);
    EXPECT_EQ(local_inbox_kind(home.file("file")), LocalInboxKind::Mbox);
    EXPECT_EQ(local_inbox_kind(home.file("plain")), LocalInboxKind::None);
    EXPECT_EQ(local_inbox_kind(home.file("none")), LocalInboxKind::None);
    EXPECT_EQ(local_inbox_kind(""), LocalInboxKind::None);
}

TEST_F(LocalStore, AsksForAnInboxWhenThereIsNone)
{
    put_mbox(home.file("chosen"), "chosen");
    answer(home.file("chosen"));
    EXPECT_EQ(first_subject(), "chosen");
    EXPECT_EQ(dialog.reasons,
              QStringList{"No local inbox was found. Looked for: " +
                          QDir::home().filePath("Maildir") + ", /var/mail/no-such-user-here"});
}

TEST_F(LocalStore, TheAnswerHoldsForOneSession)
{
    put_mbox(home.file("chosen"), "chosen");
    answer(home.file("chosen"));
    open();
    store.session().SignOff();
    EXPECT_EQ(failure_text([&] { open(); }).first(32), "32000 No local inbox was found. ");
    EXPECT_EQ(dialog.reasons.size(), 2);
}

TEST_F(LocalStore, AsksForAnUnknownProfileToo)
{
    put_maildir(home.file("Maildir"), "not this one");
    store.session().set_UserName("Work");
    EXPECT_EQ(failure_text([&] { open(); }), "32000 There is no mail profile named 'Work'.");
    EXPECT_EQ(store.session().SessionID(), 0);
}

TEST_F(LocalStore, FailsWithoutAnyoneToAsk)
{
    MailAccounts nobody(profiles, keychain);
    ProfileMailStore lonely(nobody, inbox_opener({}));
    EXPECT_THROW(lonely.session().SignOn(), RuntimeError);
}

TEST_F(LocalStore, AnAnswerThatIsNoInboxIsAFailure)
{
    answer(home.file("none"));
    EXPECT_EQ(failure_text([&] { open(); }),
              "32000 There is neither a Maildir folder nor a mailbox file: '" + home.file("none") +
                  "'");
}

TEST_F(LocalStore, EveryStepNeedsTheOneBefore)
{
    put_maildir(home.file("Maildir"), "Hello");
    MessageSet &messages = store.messages();
    EXPECT_EQ(messages.MsgCount(), 0);
    EXPECT_EQ(failure_text([&] { messages.set_SessionID(0); }),
              "32000 No mail session is open with the handle 0.");
    EXPECT_EQ(failure_text([&] { messages.Fetch(); }),
              "32000 The message set is not bound to an open mail session.");
    store.session().SignOn();
    const int handle = store.session().SessionID();
    EXPECT_THROW(messages.set_SessionID(handle + 1), RuntimeError);
    EXPECT_THROW(messages.Fetch(), RuntimeError);
    messages.set_SessionID(handle);
    EXPECT_EQ(failure_text([&] { messages.set_MsgIndex(0); }),
              "9 There is no message number 0: 0 were fetched.");
    messages.Fetch();
    EXPECT_EQ(failure_text([&] { messages.set_MsgIndex(1); }),
              "9 There is no message number 1: 1 were fetched.");
    EXPECT_EQ(failure_text([&] { messages.MsgSubject(); }),
              "32000 No message is current in the message set.");
}

TEST_F(LocalStore, SigningOffForgetsEverything)
{
    put_maildir(home.file("Maildir"), "Hello");
    open();
    store.messages().set_MsgIndex(0);
    const int handle = store.session().SessionID();
    store.session().SignOff();
    store.session().SignOff();
    EXPECT_EQ(store.messages().MsgCount(), 0);
    EXPECT_THROW(store.messages().MsgSubject(), RuntimeError);
    EXPECT_THROW(store.messages().Fetch(), RuntimeError);
    EXPECT_THROW(store.messages().set_SessionID(handle), RuntimeError);
    open();
    EXPECT_NE(store.session().SessionID(), handle);
}

TEST_F(LocalStore, AMessageThatHasGoneIsNotCurrent)
{
    put_maildir(home.file("Maildir"), "Hello");
    open();
    QFile::remove(home.file("Maildir/new/1.a"));
    EXPECT_THROW(store.messages().set_MsgIndex(0), MessageGone);
    EXPECT_THROW(store.messages().MsgNoteText(), RuntimeError);
    EXPECT_EQ(store.messages().MsgCount(), 1);
}

/// What stands behind a server's inbox here: the passwords that it was given.
struct FakeServer
{
    QString password = "right";
    QStringList given;
    int opened = 0;
};

class ServerInbox : public Inbox
{
public:
    ServerInbox(FakeServer &server, std::function<Credentials()> credentials)
        : server_(server),
          credentials_(std::move(credentials))
    {
        ++server_.opened;
    }
    void fetch() override
    {
        const Credentials given = credentials_();
        server_.given += given.secret;
        if (given.secret != server_.password)
            throw SignInRefused(32000, "imap.example.org refused: no");
    }
    int count() const override { return 3; }
    MessageFields read(int) override { return {}; }

private:
    FakeServer &server_;
    std::function<Credentials()> credentials_;
};

class ServerStore : public LocalStore
{
protected:
    ServerStore()
    {
        MailProfile profile;
        profile.name = "Work";
        profile.inbox = InboxKind::Imap;
        profile.inbox_server.host = "imap.example.org";
        profile.inbox_server.user = "ann";
        profiles.save(profile);
    }
    void sign_on(ProfileMailStore &to)
    {
        to.session().set_UserName("work");
        to.session().SignOn();
        to.messages().set_SessionID(to.session().SessionID());
    }

    FakeServer server;
    InboxOpener opener = [this](const MailProfile &profile,
                                std::function<Credentials()> credentials) {
        EXPECT_EQ(profile.inbox_server.host, "imap.example.org");
        return std::make_unique<ServerInbox>(server, std::move(credentials));
    };
    ProfileMailStore remote{accounts, opener};
};

TEST_F(ServerStore, SignsOnWithTheStoredPassword)
{
    keychain.entries["work inbox ann on imap.example.org"] = "right";
    sign_on(remote);
    remote.messages().Fetch();
    EXPECT_EQ(remote.messages().MsgCount(), 3);
    EXPECT_EQ(server.given, QStringList{"right"});
    EXPECT_EQ(dialog.reasons, QStringList());
}

TEST_F(ServerStore, AsksForThePasswordBeforeTheServerIsAsked)
{
    dialog.passwords = {{"right", true}};
    sign_on(remote);
    EXPECT_EQ(dialog.reasons.size(), 1);
    EXPECT_EQ(server.given, QStringList());
    EXPECT_TRUE(keychain.entries.empty());
    remote.messages().Fetch();
    EXPECT_EQ(dialog.reasons.size(), 1);
    EXPECT_EQ(keychain.entries["work inbox ann on imap.example.org"], "right");
}

TEST_F(ServerStore, ARefusedPasswordIsAskedForAgain)
{
    keychain.entries["work inbox ann on imap.example.org"] = "old";
    dialog.passwords = {{"worse", false}, {"right", true}};
    sign_on(remote);
    remote.messages().Fetch();
    EXPECT_EQ(server.given, (QStringList{"old", "worse", "right"}));
    EXPECT_EQ(keychain.entries["work inbox ann on imap.example.org"], "right");
    EXPECT_EQ(dialog.reasons.last(),
              "The server refused the password. It said: imap.example.org refused: no");
}

TEST_F(ServerStore, WithoutAnAnswerTheRefusalIsTheFailure)
{
    keychain.entries["work inbox ann on imap.example.org"] = "old";
    sign_on(remote);
    EXPECT_EQ(failure_text([&] { remote.messages().Fetch(); }),
              "32000 imap.example.org refused: no");
    EXPECT_EQ(remote.messages().MsgCount(), 0);
}

TEST_F(ServerStore, AnUnattendedRunFailsPlainly)
{
    MailAccounts nobody(profiles, keychain);
    ProfileMailStore lonely(nobody, opener);
    EXPECT_EQ(failure_text([&] { sign_on(lonely); }).left(60),
              "32000 The mail profile 'Work' needs the password of ann on i");
    EXPECT_EQ(lonely.session().SessionID(), 0);
}

TEST_F(ServerStore, ASessionToSendLooksForNoInboxUntilItIsFetched)
{
    remote.session().set_DownLoadMail(false);
    sign_on(remote);
    EXPECT_NE(remote.session().SessionID(), 0);
    EXPECT_EQ(server.opened, 0);
    EXPECT_EQ(keychain.reads, 0);
    keychain.entries["work inbox ann on imap.example.org"] = "right";
    remote.messages().Fetch();
    EXPECT_EQ(remote.messages().MsgCount(), 3);
}

TEST_F(LocalStore, ASessionToSendNeedsNoLocalInbox)
{
    store.session().set_DownLoadMail(false);
    store.session().SignOn();
    store.messages().set_SessionID(store.session().SessionID());
    EXPECT_EQ(dialog.reasons, QStringList());
    EXPECT_THROW(store.messages().Fetch(), RuntimeError);
    store.session().SignOff();
    EXPECT_THROW(store.session().SignOn(), RuntimeError); // the next one reads again
}

TEST_F(LocalStore, ASessionToSendNeedsItsProfile)
{
    store.session().set_UserName("Gone");
    store.session().set_DownLoadMail(false);
    EXPECT_EQ(failure_text([&] { store.session().SignOn(); }),
              "32000 There is no mail profile named 'Gone'.");
    EXPECT_EQ(store.session().SessionID(), 0);
}

TEST_F(LocalStore, ReadsTheInboxOfAProfile)
{
    put_maildir(home.file("Maildir"), "not this one");
    put_maildir(home.file("Lists"), "lists");
    MailProfile profile;
    profile.name = "Lists";
    profile.inbox = InboxKind::Maildir;
    profile.inbox_path = home.file("Lists");
    profiles.save(profile);
    store.session().set_UserName("LISTS");
    EXPECT_EQ(first_subject(), "lists");
    profile.name = "Spool";
    profile.inbox = InboxKind::Mbox;
    profile.inbox_path = "C:\\mail\\spool";
    put_mbox(data_folder() + "/Mail/spool", "spool");
    profiles.save(profile);
    store.session().set_UserName("spool");
    EXPECT_EQ(first_subject(), "spool");
    EXPECT_EQ(dialog.reasons, QStringList());
}
} // namespace
