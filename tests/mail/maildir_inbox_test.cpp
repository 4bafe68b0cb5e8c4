#include "mail/maildir_inbox.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <cstring>
#include <fcntl.h>
#include <map>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{
class Maildir : public testing::Test
{
protected:
    Maildir()
    {
        for (const char *part : {"cur", "new", "tmp"})
            QDir().mkpath(folder() + '/' + part);
    }

    QString folder() const { return home.file("Maildir"); }
    void put(const QString &name, const QByteArray &subject)
    {
        put_file(folder() + '/' + name, mail("Subject: " + subject));
    }
    QStringList subjects()
    {
        QStringList found;
        for (int i = 0; i < inbox.count(); ++i)
            found += inbox.read(i).subject;
        return found;
    }

    PrivateHome home;
    MaildirInbox inbox{folder()};
};

TEST_F(Maildir, ReadsNewAndCurInTheOrderOfArrival)
{
    put("cur/1700000003.b.host:2,S", "third");
    put("new/1700000001.z.host", "first");
    put("new/1700000003.a.host", "second");
    put("new/20000000000.a.host", "last"); // more digits, later
    put("cur/not a number", "zero");
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"zero", "first", "second", "third", "last"}));
}

TEST_F(Maildir, LeavesOutWhatIsNoMessage)
{
    put("tmp/1.a", "being written");
    put("new/.hidden", "hidden");
    put("cur/2.a:2,ST", "trashed");
    put("cur/3.a:2,S", "kept");
    QDir().mkpath(folder() + "/cur/4.folder");
    QFile::link(folder() + "/cur/3.a:2,S", folder() + "/cur/5.link");
    ASSERT_EQ(mkfifo(QFile::encodeName(folder() + "/cur/6.pipe").constData(), 0600), 0);
    inbox.fetch();
    EXPECT_EQ(subjects(), QStringList{"kept"});
}

TEST_F(Maildir, SeesAMessageOnceThatIsMovedWhileItLists)
{
    put("new/1.a", "one");
    put("cur/1.a:2,S", "one");
    put("new/1.a.b", "two");
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "two"}));
}

TEST_F(Maildir, IsEmptyWithoutMessagesAndWithOneOfTheTwoFolders)
{
    inbox.fetch();
    EXPECT_EQ(inbox.count(), 0);
    QDir().rmdir(folder() + "/new");
    put("cur/1.a:2,", "one");
    inbox.fetch();
    EXPECT_EQ(inbox.count(), 1);
}

TEST_F(Maildir, FindsAMessageAgainWhoseFlagsChanged)
{
    put("new/1.a", "one");
    put("cur/2.a:2,", "two");
    put("cur/3.a:2,", "three");
    inbox.fetch();
    QFile::rename(folder() + "/new/1.a", folder() + "/cur/1.a:2,RS");
    QFile::rename(folder() + "/cur/2.a:2,", folder() + "/cur/2.a:2,F");
    EXPECT_EQ(subjects(), (QStringList{"one", "two", "three"}));
}

TEST_F(Maildir, SaysThatAMessageHasGone)
{
    put("new/1.a", "one");
    put("new/2.a", "two");
    put("cur/3.a:2,", "three");
    inbox.fetch();
    QFile::remove(folder() + "/new/1.a");
    QFile::rename(folder() + "/cur/3.a:2,", folder() + "/cur/3.a:2,T");
    EXPECT_THROW(inbox.read(0), MessageGone);
    EXPECT_THROW(inbox.read(0), MessageGone);
    EXPECT_EQ(inbox.read(1).subject, "two");
    EXPECT_THROW(inbox.read(2), MessageGone);
}

/// Puts a socket where a file was: it is there, but cannot be opened.
void put_socket(const QString &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = path.toUtf8();
    ASSERT_LT(name.size(), static_cast<qsizetype>(sizeof address.sun_path));
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    const int handle = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(handle, 0);
    EXPECT_EQ(bind(handle, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    close(handle);
}

TEST_F(Maildir, AMessageThatCannotBeOpenedHasNotGone)
{
    put("new/1.a", "one");
    inbox.fetch();
    QFile::remove(folder() + "/new/1.a");
    put_socket(folder() + "/new/1.a");
    try {
        inbox.read(0);
        FAIL() << "read without a file";
    } catch (const MessageGone &) {
        FAIL() << "taken for gone";
    } catch (const RuntimeError &error) {
        EXPECT_TRUE(error.description().startsWith("The message cannot be read")) << error.what();
    }
}

TEST_F(Maildir, DoesNotFollowALinkThatTookAMessagesPlace)
{
    put("new/1.a", "one");
    inbox.fetch();
    QFile::remove(folder() + "/new/1.a");
    QFile::link("/etc/passwd", folder() + "/new/1.a");
    EXPECT_THROW(inbox.read(0), MessageGone);
}

TEST_F(Maildir, TakesTheFilesTimeForAMessageWithoutDate)
{
    put("new/1.a", "one");
    QFile file(folder() + "/new/1.a");
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(QDateTime(QDate(2020, 5, 6), QTime(7, 8, 9)),
                     QFileDevice::FileModificationTime);
    file.close();
    inbox.fetch();
    EXPECT_EQ(inbox.read(0).date, "2020-05-06 07:08:09");
}

// Names, contents and times of everything in a folder.
struct Seen
{
    QByteArray content;
    qint64 accessed = 0;
    qint64 changed = 0;
    bool operator==(const Seen &) const = default;
};

qint64 nanoseconds(const timespec &time)
{
    return time.tv_sec * qint64(1'000'000'000) + time.tv_nsec;
}

void look(const QString &path, std::map<QString, Seen> &found)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    ASSERT_EQ(stat(name.constData(), &status), 0);
    Seen &seen = found[path];
    seen.accessed = nanoseconds(status.st_atim);
    seen.changed = nanoseconds(status.st_mtim);
    if (!S_ISREG(status.st_mode))
        return;
    const int descriptor = open(name.constData(), O_RDONLY | O_NOATIME);
    ASSERT_GE(descriptor, 0);
    seen.content.resize(status.st_size);
    EXPECT_EQ(::read(descriptor, seen.content.data(), static_cast<std::size_t>(status.st_size)),
              status.st_size);
    close(descriptor);
}

TEST_F(Maildir, IsLeftAsItWas)
{
    const QStringList paths = {"", "/new", "/cur", "/tmp", "/new/1.a", "/cur/2.a:2,S"};
    put("new/1.a", "one");
    put("cur/2.a:2,S", "two");
    // Access times older than the last change: any reading that leaves a trace would renew them.
    const timespec times[2] = {{1'000'000'000, 1}, {1'100'000'000, 2}};
    std::map<QString, Seen> before;
    for (const QString &path : paths) {
        ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(folder() + path).constData(), times, 0), 0);
        look(folder() + path, before);
    }
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "two"}));
    std::map<QString, Seen> after;
    for (const QString &path : paths)
        look(folder() + path, after);
    EXPECT_TRUE(before == after);
    EXPECT_EQ(QDir(folder() + "/new").entryList(QDir::Files), QStringList{"1.a"});
    EXPECT_EQ(QDir(folder() + "/cur").entryList(QDir::Files), QStringList{"2.a:2,S"});
}

TEST_F(Maildir, AHugeFileIsReadInItsFirstPartAndSaysSo)
{
    put("new/1.a", "huge");
    QFile file(folder() + "/new/1.a");
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const qint64 size = qint64(256) * 1024 * 1024 + 5;
    ASSERT_TRUE(file.resize(size)); // sparse: takes no room on the disk
    file.close();
    inbox.fetch();
    const MessageFields fields = inbox.read(0);
    EXPECT_EQ(fields.subject, "huge");
    EXPECT_TRUE(fields.text.endsWith(" bytes of this message are not shown here.]"))
        << fields.text.right(100).toStdString();
    EXPECT_LE(fields.text.size(), 1024 * 1024 + 200);
}
} // namespace
