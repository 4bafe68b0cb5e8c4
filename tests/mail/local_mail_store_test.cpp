#include "mail/local_inbox.h"
#include "mail/local_mail_store.h"
#include "platform/drive_path.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace
{
class ScriptedLogOn : public LogOnDialog
{
public:
    std::optional<QString> answer;
    QStringList reasons;

    std::optional<QString> choose_inbox(const QString &reason) override
    {
        reasons += reason;
        return answer;
    }
};

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
    template <typename Action>
    QString failure(Action action)
    {
        try {
            action();
        } catch (const RuntimeError &error) {
            return QString::number(error.number()) + ' ' + error.description();
        }
        return "no failure";
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

    PrivateHome home;
    ScriptedLogOn dialog;
    LocalMailStore store{&dialog};
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
    dialog.answer = home.file("chosen");
    EXPECT_EQ(first_subject(), "chosen");
    EXPECT_EQ(dialog.reasons,
              QStringList{"No local inbox was found. Looked for: " +
                          QDir::home().filePath("Maildir") + ", /var/mail/no-such-user-here"});
}

TEST_F(LocalStore, TheAnswerHoldsForOneSession)
{
    put_mbox(home.file("chosen"), "chosen");
    dialog.answer = home.file("chosen");
    open();
    store.session().SignOff();
    dialog.answer = std::nullopt;
    EXPECT_EQ(failure([&] { open(); }).first(32), "32000 No local inbox was found. ");
    EXPECT_EQ(dialog.reasons.size(), 2);
}

TEST_F(LocalStore, AsksForAnUnknownProfileToo)
{
    put_maildir(home.file("Maildir"), "not this one");
    store.session().set_UserName("Work");
    EXPECT_EQ(failure([&] { open(); }), "32000 There is no mail profile named 'Work'.");
    EXPECT_EQ(store.session().SessionID(), 0);
}

TEST_F(LocalStore, FailsWithoutAnyoneToAsk)
{
    LocalMailStore lonely;
    EXPECT_THROW(lonely.session().SignOn(), RuntimeError);
}

TEST_F(LocalStore, AnAnswerThatIsNoInboxIsAFailure)
{
    dialog.answer = home.file("none");
    EXPECT_EQ(failure([&] { open(); }),
              "32000 There is neither a Maildir folder nor a mailbox file: '" + home.file("none") +
                  "'");
}

TEST_F(LocalStore, EveryStepNeedsTheOneBefore)
{
    put_maildir(home.file("Maildir"), "Hello");
    MessageSet &messages = store.messages();
    EXPECT_EQ(messages.MsgCount(), 0);
    EXPECT_EQ(failure([&] { messages.set_SessionID(0); }),
              "32000 No mail session is open with the handle 0.");
    EXPECT_EQ(failure([&] { messages.Fetch(); }),
              "32000 The message set is not bound to an open mail session.");
    store.session().SignOn();
    const int handle = store.session().SessionID();
    EXPECT_THROW(messages.set_SessionID(handle + 1), RuntimeError);
    EXPECT_THROW(messages.Fetch(), RuntimeError);
    messages.set_SessionID(handle);
    EXPECT_EQ(failure([&] { messages.set_MsgIndex(0); }),
              "9 There is no message number 0: 0 were fetched.");
    messages.Fetch();
    EXPECT_EQ(failure([&] { messages.set_MsgIndex(1); }),
              "9 There is no message number 1: 1 were fetched.");
    EXPECT_EQ(failure([&] { messages.MsgSubject(); }),
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
} // namespace
