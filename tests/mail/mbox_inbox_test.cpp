#include "mail/mbox_inbox.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/private_home.h"

#include <QFile>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
const QByteArray separator = "From ann@example.org Mon Jan  2 10:20:30 2006\n";

class Mbox : public testing::Test
{
protected:
    QString path() const { return home.file("mbox"); }
    void put(const QByteArray &bytes) const { put_file(path(), bytes); }
    QStringList subjects()
    {
        QStringList found;
        for (int i = 0; i < inbox.count(); ++i)
            found += inbox.read(i).subject;
        return found;
    }
    QString only_text(const QByteArray &bytes)
    {
        put(bytes);
        inbox.fetch();
        return inbox.count() == 1 ? inbox.read(0).text : QString("%1 messages").arg(inbox.count());
    }
    QString fetch_failure()
    {
        try {
            inbox.fetch();
        } catch (const RuntimeError &error) {
            return error.description();
        }
        return {};
    }

    PrivateHome home;
    MboxInbox inbox{path()};
};

QByteArray message(const QByteArray &subject, const QByteArray &body = "body\n")
{
    return separator + mail("Subject: " + subject, body) + "\n";
}

TEST_F(Mbox, ReadsMessageAfterMessage)
{
    put(message("one") + message("two") + message("three"));
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "two", "three"}));
    EXPECT_EQ(inbox.read(1).text, "body\r\n");
    EXPECT_EQ(inbox.read(0).date, "2006-01-02 10:20:30");
}

TEST_F(Mbox, AnEmptyFileIsAnEmptyInbox)
{
    put("");
    inbox.fetch();
    EXPECT_EQ(inbox.count(), 0);
    put("\n\n");
    inbox.fetch();
    EXPECT_EQ(inbox.count(), 0);
}

TEST_F(Mbox, ReadsCrlfFiles)
{
    put(QByteArray(message("one") + message("two")).replace("\n", "\r\n"));
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "two"}));
    EXPECT_EQ(inbox.read(0).text, "body\r\n");
}

TEST_F(Mbox, ProseThatBeginsWithFromIsNoSeparator)
{
    EXPECT_EQ(only_text(separator + "\nFrom here on\n\nFrom 10:20 to 11:30\n\nFrom 2006 on\n\nx\n"),
              "From here on\r\n\r\nFrom 10:20 to 11:30\r\n\r\nFrom 2006 on\r\n\r\nx\r\n");
    EXPECT_EQ(only_text(separator + "\nx\n" + separator + "\n"), // no empty line in front
              "x\r\nFrom ann@example.org Mon Jan  2 10:20:30 2006\r\n");
}

TEST_F(Mbox, SeparatorsComeInManyForms)
{
    for (const char *line :
         {"From - Mon Jan 02 10:20:30 2006\n", "From a@x.example Mon Jan 2 10:20 CET 2006\n",
          "From \"a b\"@x.example Mon, 02 Jan 2006 10:20:30 +0100\n",
          "From a@x.example Mon Jan  2 10:20:30 2006 remote from relay\n"}) {
        put(message("one") + line + mail("Subject: two"));
        inbox.fetch();
        EXPECT_EQ(subjects(), (QStringList{"one", "two"})) << line;
    }
}

TEST_F(Mbox, ASeparatorGivesItsDateWithAZoneBeforeOrBehindTheYear)
{
    for (const char *end : {"10:20:30 2006", "10:20:30 CET 2006", "10:20:30 2006 +0100",
                            "10:20:30 +0100 2006", "10:20:30 2006 remote from relay"}) {
        put(QByteArray("From a@x.example Mon Jan  2 ") + end + "\n" + mail("Subject: x"));
        inbox.fetch();
        ASSERT_EQ(inbox.count(), 1) << end;
        EXPECT_EQ(inbox.read(0).date, "2006-01-02 10:20:30") << end;
    }
}

TEST_F(Mbox, TakesOneQuoteFromQuotedFromLines)
{
    EXPECT_EQ(only_text(separator + "\n>From a\nx >From b\n>>From c\n>>> From d\n>Fromage\n"),
              "From a\r\nx >From b\r\n>From c\r\n>>> From d\r\n>Fromage\r\n");
}

TEST_F(Mbox, DoesNotBelieveAContentLength)
{
    put(separator + mail("Subject: one\nContent-Length: 100000") + "\n" + message("two"));
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "two"}));
}

TEST_F(Mbox, LeavesOutMessagesThatWaitToBeRemoved)
{
    put(message("one\nX-Mozilla-Status: 0001") + message("two\nX-Mozilla-Status: 0009") +
        message("three\nX-Mozilla-Status: 0008\nX-Mozilla-Status2: 00000000") +
        message("four", "X-Mozilla-Status: 0008\n"));
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "four"}));
}

TEST_F(Mbox, TheLastLineNeedsNoEnd)
{
    EXPECT_EQ(only_text(separator + "Subject: x\n\nno end"), "no end");
    EXPECT_EQ(only_text(separator + "Subject: x"), "");
    put(separator.chopped(1));
    inbox.fetch();
    EXPECT_EQ(subjects(), QStringList{""});
}

TEST_F(Mbox, MessagesAndLinesMayBeLongerThanAChunk)
{
    const QByteArray line(700'000, 'x');
    put(message("one", line + "\n") + message("two", (QByteArray(99, 'y') + '\n').repeated(9'000)) +
        message("three"));
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "two", "three"}));
    EXPECT_EQ(inbox.read(0).text.size(), line.size() + 2);
    EXPECT_EQ(inbox.read(1).text.size(), 9'000 * 101);
}

TEST_F(Mbox, SaysWhatIsWrongWithTheFile)
{
    EXPECT_TRUE(fetch_failure().contains(path()));
    put("dear diary\n" + message("one"));
    EXPECT_EQ(fetch_failure(),
              "The mailbox file does not begin with a \"From \" line: '" + path() + "'");
    QFile::remove(path());
    ASSERT_EQ(mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    EXPECT_EQ(fetch_failure(), "This is no mailbox file: '" + path() + "'");
}

TEST_F(Mbox, MailThatArrivesMeanwhileWaitsForTheNextFetch)
{
    put(message("one") + message("two"));
    inbox.fetch();
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write(message("three"));
    file.close();
    EXPECT_EQ(subjects(), (QStringList{"one", "two"}));
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "two", "three"}));
}

TEST_F(Mbox, FindsMessagesAgainAfterOthersWereRemoved)
{
    put(message("first one") + message("two") + message("third", "another body\n"));
    inbox.fetch();
    put(message("two") + message("third", "another body\n")); // in place, as mail programs do
    EXPECT_THROW(inbox.read(0), MessageGone);
    EXPECT_EQ(inbox.read(1).subject, "two");
    EXPECT_EQ(inbox.read(2).subject, "third");
}

TEST_F(Mbox, AMessageThatWasMarkedAsDeletedHasGone)
{
    put(message("one\nX-Mozilla-Status: 0001") + message("two"));
    inbox.fetch();
    put(message("one\nX-Mozilla-Status: 0009") + message("two"));
    EXPECT_THROW(inbox.read(0), MessageGone);
    EXPECT_EQ(inbox.read(1).subject, "two");
}

TEST_F(Mbox, AnEmptiedFileHasNoMessagesLeft)
{
    put(message("one"));
    inbox.fetch();
    put("");
    EXPECT_THROW(inbox.read(0), MessageGone);
    EXPECT_EQ(inbox.count(), 1);
}

TEST_F(Mbox, IsReadWhileAnotherProgramHoldsItsLockAndLeavesNoneItself)
{
    put(message("one"));
    const int writer = open(QFile::encodeName(path()).constData(), O_RDWR);
    ASSERT_GE(writer, 0);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(fcntl(writer, F_OFD_SETLK, &lock), 0);
    inbox.fetch();
    EXPECT_EQ(subjects(), QStringList{"one"});
    lock.l_type = F_UNLCK;
    ASSERT_EQ(fcntl(writer, F_OFD_SETLK, &lock), 0);
    EXPECT_EQ(subjects(), QStringList{"one"});
    lock.l_type = F_WRLCK;
    EXPECT_EQ(fcntl(writer, F_OFD_SETLK, &lock), 0) << "a lock was left behind";
    close(writer);
}

TEST_F(Mbox, IsLeftAsItWas)
{
    put(message("one") + message("two"));
    const QByteArray name = QFile::encodeName(path());
    const timespec times[2] = {{1'000'000'000, 1}, {1'100'000'000, 2}};
    ASSERT_EQ(utimensat(AT_FDCWD, name.constData(), times, 0), 0);
    inbox.fetch();
    EXPECT_EQ(subjects(), (QStringList{"one", "two"}));
    struct stat status = {};
    ASSERT_EQ(stat(name.constData(), &status), 0);
    EXPECT_EQ(status.st_atim.tv_sec, times[0].tv_sec);
    EXPECT_EQ(status.st_mtim.tv_sec, times[1].tv_sec);
    EXPECT_EQ(status.st_mtim.tv_nsec, times[1].tv_nsec);
}
} // namespace
