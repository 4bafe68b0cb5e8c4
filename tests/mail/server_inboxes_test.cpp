// IMAP and POP3 against a real server.
#include "mail/imap_inbox.h"
#include "mail/maildir_inbox.h"
#include "mail/pop3_inbox.h"
#include "tests/mail/mail_texts.h"
#include "tests/mail/message_shapes.h"
#include "tests/mail/servers/dovecot_server.h"
#include "tests/support/print_qt.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

namespace
{
using namespace std::chrono_literals;

class ServerInbox : public testing::Test
{
protected:
    // Named so that the server and the folder's own reader have them in one order.
    void put(const QByteArrayList &messages, const QString &folder = "cur",
             const QString &flags = ":2,S")
    {
        for (const QByteArray &message : messages) {
            const QString name =
                QStringLiteral("%1.M1P1.host%2").arg(1'700'000'000 + ++put_).arg(flags);
            const QString path = server.mail() + '/' + folder + '/' + name;
            put_file(path, message);
            const timespec times[2] = {{1'750'000'000 + put_, 0}, {1'750'000'000 + put_, 0}};
            ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        }
    }

    NetworkConditions conditions()
    {
        return {10s, [this] { ++turns; }, certificates.authority()};
    }
    ImapInbox imap(LineSecurity security = LineSecurity::Tls, const QString &mailbox = {})
    {
        return {server.imap(security), mailbox, &DovecotServer::credentials, conditions()};
    }
    Pop3Inbox pop3(LineSecurity security = LineSecurity::Tls)
    {
        return {server.pop3(security), &DovecotServer::credentials, conditions()};
    }

    // Names, sizes and times of what the server keeps, but not who looked at it last.
    QStringList state() const
    {
        QStringList found;
        for (const char *folder : {"new", "cur", "tmp", "."}) {
            const QDir dir(server.mail() + '/' + folder);
            for (const QFileInfo &file : dir.entryInfoList(QDir::Files, QDir::Name))
                found += QStringLiteral("%1/%2 %3 %4")
                             .arg(folder, file.fileName())
                             .arg(file.size())
                             .arg(file.lastModified().toMSecsSinceEpoch());
        }
        return found;
    }

    Certificates certificates;
    DovecotServer server{certificates};
    int turns = 0;
    int put_ = 0;
};

std::vector<MessageFields> all_of(Inbox &inbox)
{
    std::vector<MessageFields> found;
    inbox.fetch();
    for (int i = 0; i < inbox.count(); ++i)
        found.push_back(inbox.read(i));
    return found;
}

void expect_same(const std::vector<MessageFields> &found,
                 const std::vector<MessageFields> &expected)
{
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].subject, expected[i].subject);
        EXPECT_EQ(found[i].address, expected[i].address) << expected[i].subject.toStdString();
        EXPECT_EQ(found[i].name, expected[i].name) << expected[i].subject.toStdString();
        EXPECT_EQ(found[i].date, expected[i].date) << expected[i].subject.toStdString();
        EXPECT_EQ(found[i].text, expected[i].text) << expected[i].subject.toStdString();
    }
}

TEST_F(ServerInbox, GivesTheFieldsThatTheFolderItselfGives)
{
    put(message_shapes());
    server.start();
    MaildirInbox folder(server.mail());
    const std::vector<MessageFields> expected = all_of(folder);
    ASSERT_GT(expected.size(), 30U);
    ImapInbox by_imap = imap();
    expect_same(all_of(by_imap), expected);
    Pop3Inbox by_pop3 = pop3();
    std::vector<MessageFields> whole = all_of(by_pop3);
    ASSERT_EQ(whole.size(), expected.size());
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (expected[i].subject.isEmpty()) // has no date but the server's, which POP3 does not tell
            whole[i].date = expected[i].date;
    }
    expect_same(whole, expected);
}

// Which is told in a line of eleven megabytes.
TEST_F(ServerInbox, GoesOnBehindAMessageOfALongStructure)
{
    put({letter(1), message_of_long_structure(), letter(2)});
    server.start();
    ImapInbox inbox = imap();
    const std::vector<MessageFields> found = all_of(inbox);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[1].subject, "recipients enclosed");
    EXPECT_EQ(found[1].address, "juergen@example.org");
    EXPECT_TRUE(found[1].text.startsWith("in front\r\n")) << found[1].text.toStdString();
    EXPECT_EQ(found[2].subject, "letter 2");
}

TEST_F(ServerInbox, LeavesTwoThousandMessagesAsTheyAre)
{
    QByteArrayList letters;
    for (int i = 0; i < 1'500; ++i)
        letters += letter(i);
    put(letters, "cur", ":2,S");
    put({letter(1'500), letter(1'501)}, "cur", ":2,");
    put({letter(1'502)}, "cur", ":2,ST"); // deleted: is left out
    letters.clear();
    for (int i = 1'503; i < 2'000; ++i)
        letters += letter(i);
    put(letters, "new", "");
    server.start();
    const QStringList before = state();
    ASSERT_EQ(before.size(), 2'000);
    {
        ImapInbox inbox = imap();
        const std::vector<MessageFields> found = all_of(inbox);
        ASSERT_EQ(found.size(), 1'999U);
        EXPECT_EQ(found[1'501].subject, "letter 1501");
        EXPECT_EQ(found[1'502].subject, "letter 1503");
        EXPECT_EQ(found[1'998].text, "Words of letter 1999\r\n");
    }
    EXPECT_EQ(state(), before);
    // It writes its log when it gets to it.
    EXPECT_TRUE(QTest::qWaitFor([this] { return server.log().contains("Logged out"); }))
        << server.log().toStdString();
}

TEST_F(ServerInbox, Pop3LeavesTwoThousandMessagesAsTheyAre)
{
    QByteArrayList letters;
    for (int i = 0; i < 1'999; ++i)
        letters += letter(i);
    put(letters, "cur", ":2,");
    put({letter(1'999)}, "cur", ":2,S");
    server.start();
    const QStringList before = state();
    {
        Pop3Inbox inbox = pop3();
        const std::vector<MessageFields> found = all_of(inbox);
        ASSERT_EQ(found.size(), 2'000U);
        EXPECT_EQ(found[0].subject, "letter 0");
        EXPECT_EQ(found[1'999].text, "Words of letter 1999\r\n");
    }
    EXPECT_EQ(state(), before);
}

// Signing on by POP3 has the server take new mail in; nothing is marked as read by that.
TEST_F(ServerInbox, Pop3MarksNoNewMessageAsRead)
{
    put({letter(1), letter(2)}, "new", "");
    server.start();
    {
        Pop3Inbox inbox = pop3();
        ASSERT_EQ(all_of(inbox).size(), 2U);
    }
    const QStringList after = state();
    ASSERT_EQ(after.size(), 2);
    for (const QString &file : after)
        EXPECT_TRUE(file.startsWith("new/") || file.contains(":2, ")) << file.toStdString();
}

TEST_F(ServerInbox, AnAttachmentStaysOnTheServer)
{
    const QByteArray attachment = QByteArray("QUJD\n").repeated(4 * 1024 * 1024);
    put({mail("Subject: big\nContent-Type: multipart/mixed; boundary=b",
              "--b\nContent-Type: text/plain\n\nthe text\n--b\nContent-Type: application/zip\n"
              "Content-Transfer-Encoding: base64\n\n" +
                  attachment + "\n--b--\n")});
    server.start();
    ImapInbox inbox = imap();
    const std::vector<MessageFields> found = all_of(inbox);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].text, "the text");
    EXPECT_EQ(found[0].date, "2025-06-15 17:06:41"); // the server's: the message has none
    EXPECT_LT(inbox.received(), 8'000);
}

TEST_F(ServerInbox, IsReadInAnyOrderAndMoreThanOnce)
{
    QByteArrayList letters;
    for (int i = 0; i < 600; ++i)
        letters += letter(i);
    put(letters + message_shapes());
    server.start();
    ImapInbox by_imap = imap();
    Pop3Inbox by_pop3 = pop3();
    for (Inbox *inbox : std::initializer_list<Inbox *>{&by_imap, &by_pop3}) {
        inbox->fetch();
        for (const int i : {599, 0, 0, 5, 300, 2, 599, 600, 600})
            EXPECT_EQ(inbox->read(i).subject,
                      i == 600 ? QString("plain and long") : QStringLiteral("letter %1").arg(i));
        inbox->fetch();
        EXPECT_EQ(inbox->read(7).subject, "letter 7");
    }
}

TEST_F(ServerInbox, MayBeEmpty)
{
    server.start();
    ImapInbox by_imap = imap();
    EXPECT_TRUE(all_of(by_imap).empty());
    Pop3Inbox by_pop3 = pop3();
    EXPECT_TRUE(all_of(by_pop3).empty());
}

TEST_F(ServerInbox, SaysThatAMessageHasGone)
{
    QByteArrayList letters;
    for (int i = 0; i < 1'200; ++i)
        letters += letter(i);
    put(letters);
    server.start();
    ImapInbox inbox = imap();
    inbox.fetch();
    const QDir folder(server.mail() + "/cur");
    ASSERT_TRUE(QFile::remove(folder.filePath(folder.entryList(QDir::Files, QDir::Name).last())));
    EXPECT_EQ(inbox.read(0).subject, "letter 0");
    EXPECT_THROW(inbox.read(1'199), MessageGone);
    EXPECT_EQ(inbox.read(1'198).subject, "letter 1198");
}

TEST_F(ServerInbox, IsFoundUnderANameOfAnyLettersAndDepth)
{
    for (const char *name : {".Lists", ".Lists.K&APY-ln & mehr"}) {
        const QString folder = server.mail() + '/' + QString(name).replace(" & ", " &- ");
        put_file(folder + "/cur/1700000000.M1P1.host:2,S", letter(7));
        QDir().mkpath(folder + "/new");
        QDir().mkpath(folder + "/tmp");
    }
    server.start();
    for (const QString &name : {QString("Lists"), QStringLiteral("Lists.Köln & mehr"),
                                QStringLiteral("Lists/Köln & mehr")}) {
        ImapInbox inbox = imap(LineSecurity::Tls, name);
        EXPECT_EQ(all_of(inbox).size(), 1U) << name.toStdString();
    }
    ImapInbox none = imap(LineSecurity::Tls, "No/Such");
    try {
        none.fetch();
        FAIL() << "found a mailbox that there is not";
    } catch (const RuntimeError &error) {
        EXPECT_TRUE(error.description().contains("opening the mailbox 'No/Such': Mailbox"))
            << error.what();
    }
}

QString failure(Inbox &inbox)
{
    try {
        all_of(inbox);
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), error_number::mail_failure);
        return error.description();
    }
    return QStringLiteral("none");
}

TEST_F(ServerInbox, IsReadOverEveryKindOfLine)
{
    put({letter(1)});
    server.start();
    for (const auto security : {LineSecurity::Tls, LineSecurity::StartTls, LineSecurity::Plain}) {
        ImapInbox by_imap = imap(security);
        EXPECT_EQ(failure(by_imap), "none");
        Pop3Inbox by_pop3 = pop3(security);
        EXPECT_EQ(failure(by_pop3), "none");
    }
    EXPECT_TRUE(QTest::qWaitFor([this] { return server.log().count("method=SCRAM-SHA-256") == 6; }))
        << server.log().toStdString();
}

TEST_F(ServerInbox, IsSignedOnToByEveryMechanism)
{
    for (const char *mechanism : {"plain", "login"}) {
        qputenv("DOVECOT_MECHANISMS", mechanism);
        DovecotServer other(certificates);
        other.start();
        ImapInbox by_imap(other.imap(), {}, &DovecotServer::credentials, conditions());
        EXPECT_EQ(failure(by_imap), "none");
        Pop3Inbox by_pop3(other.pop3(), &DovecotServer::credentials, conditions());
        EXPECT_EQ(failure(by_pop3), "none");
        const QByteArray method = "method=" + QByteArray(mechanism).toUpper();
        EXPECT_TRUE(QTest::qWaitFor([&] { return other.log().count(method) == 2; }))
            << other.log().toStdString();
    }
    qunsetenv("DOVECOT_MECHANISMS");
}

TEST_F(ServerInbox, IsNotReadWithAWrongPassword)
{
    server.start();
    const auto wrong = [] {
        return Credentials{SignInKind::Password, "user@example.org", "wr0ng-pass"};
    };
    ImapInbox by_imap(server.imap(), {}, wrong, conditions());
    const QString refusal = failure(by_imap);
    EXPECT_TRUE(refusal.contains("logging in: [AUTHENTICATIONFAILED] Authentication failed."))
        << refusal.toStdString();
    EXPECT_FALSE(refusal.contains("wr0ng"));
    Pop3Inbox by_pop3(server.pop3(), wrong, conditions());
    EXPECT_TRUE(failure(by_pop3).contains("logging in: [AUTH] Authentication failed."));
}

TEST(ServerInboxes, AreNotReadFromAServerWithAnotherName)
{
    const Certificates certificates;
    DovecotServer server(certificates, "wrong");
    server.start();
    const NetworkConditions conditions{10s, [] {}, certificates.authority()};
    for (const auto security : {LineSecurity::Tls, LineSecurity::StartTls}) {
        ImapInbox by_imap(server.imap(security), {}, &DovecotServer::credentials, conditions);
        EXPECT_TRUE(failure(by_imap).contains("The host name did not match"));
        Pop3Inbox by_pop3(server.pop3(security), &DovecotServer::credentials, conditions);
        EXPECT_TRUE(failure(by_pop3).contains("The host name did not match"));
    }
    EXPECT_FALSE(server.log().contains("user@example.org"));
}
} // namespace
