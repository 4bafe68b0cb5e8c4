#include "platform/drive_path.h"
#include "tests/mail/sending_room.h"

#include <QDir>
#include <QRegularExpression>

#include <pwd.h>
#include <unistd.h>

namespace
{
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
} // namespace
