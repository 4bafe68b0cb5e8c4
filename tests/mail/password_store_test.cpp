#include "mail/keychain_passwords.h"
#include "tests/support/password_fakes.h"
#include "tests/support/private_home.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace
{
using namespace std::chrono_literals;

MailProfile profile(const QString &name, const QString &inbox_host = "imap.example.org")
{
    MailProfile made;
    made.name = name;
    made.inbox = InboxKind::Imap;
    made.inbox_server.host = inbox_host;
    made.inbox_server.user = "ann";
    made.outgoing = OutgoingKind::Smtp;
    made.outgoing_server.host = "smtp.example.org";
    made.outgoing_server.user = "ann";
    return made;
}

PasswordKey inbox_of(const QString &name)
{
    return password_key(profile(name), MailUse::Reading);
}

PasswordKey sending_of(const QString &name)
{
    return password_key(profile(name), MailUse::Sending);
}

const QString at_inbox = " inbox ann on imap.example.org";
const QString at_sending = " sending ann on smtp.example.org";
const PasswordKey work = inbox_of("Work");
const PasswordKey work_sending = sending_of("Work");

class Passwords : public testing::Test
{
protected:
    FakeKeychain keychain;
    SessionPasswords passwords{keychain};
};

TEST_F(Passwords, AreHeldForTheSessionAndNotStored)
{
    passwords.hold(work, "secret");
    EXPECT_EQ(passwords.find(inbox_of("WORK")).password, "secret");
    EXPECT_EQ(passwords.find(work_sending).answer, StoreAnswer::Absent);
    EXPECT_TRUE(keychain.entries.empty());
    passwords.release(work);
    EXPECT_EQ(passwords.find(work).answer, StoreAnswer::Absent);
}

TEST_F(Passwords, AreAskedOfTheKeychainOnce)
{
    keychain.entries["work" + at_inbox] = "stored";
    EXPECT_EQ(passwords.find(work).password, "stored");
    EXPECT_EQ(passwords.find(work).password, "stored");
    EXPECT_EQ(keychain.reads, 1);
}

TEST_F(Passwords, AreKeptInTheKeychainWhenItAnswers)
{
    EXPECT_TRUE(passwords.keep(work, "secret"));
    EXPECT_EQ(keychain.entries["work" + at_inbox], "secret");
    keychain.answers = false;
    EXPECT_FALSE(passwords.keep(work_sending, "other"));
    EXPECT_EQ(passwords.find(work_sending).password, "other");
}

TEST_F(Passwords, AnAbsentKeychainIsToldFromAnAbsentPassword)
{
    keychain.answers = false;
    EXPECT_EQ(passwords.find(work).answer, StoreAnswer::NoStore);
}

TEST_F(Passwords, GoWithTheirProfile)
{
    passwords.keep(work, "a");
    passwords.keep(work_sending, "b");
    EXPECT_TRUE(passwords.take_along(profile("Work"), profile("Club")));
    EXPECT_EQ(keychain.entries,
              (std::map<QString, QString>{{"club" + at_inbox, "a"}, {"club" + at_sending, "b"}}));
    EXPECT_EQ(passwords.find(sending_of("Club")).password, "b");
    EXPECT_EQ(passwords.find(work).answer, StoreAnswer::Absent);
    EXPECT_TRUE(passwords.take_along(profile("Club"), profile("CLUB")));
    passwords.remove_all(profile("club"));
    EXPECT_TRUE(keychain.entries.empty());
    EXPECT_EQ(passwords.find(inbox_of("Club")).answer, StoreAnswer::Absent);
}

TEST_F(Passwords, HeldOnesGoToTheNewNameToo)
{
    passwords.hold(work, "a");
    EXPECT_TRUE(passwords.take_along(profile("Work"), profile("Club")));
    EXPECT_EQ(passwords.find(inbox_of("Club")).password, "a");
    EXPECT_TRUE(keychain.entries.empty());
    keychain.answers = false;
    EXPECT_FALSE(passwords.take_along(profile("Club"), profile("Work")));
    EXPECT_EQ(passwords.find(work).password, "a");
    EXPECT_EQ(passwords.find(inbox_of("Club")).answer, StoreAnswer::NoStore);
}

TEST_F(Passwords, BelongToAUserOnAServer)
{
    EXPECT_EQ(work.account, "ann on imap.example.org");
    EXPECT_EQ(password_key(profile("WORK", "IMAP.example.ORG"), MailUse::Reading), work);
    MailProfile other = profile("Work", "imap.evil.example");
    EXPECT_FALSE(password_key(other, MailUse::Reading) == work);
    other = profile("Work");
    other.inbox_server.user = "Ann"; // servers may tell them apart
    EXPECT_FALSE(password_key(other, MailUse::Reading) == work);
    EXPECT_EQ(password_key(other, MailUse::Sending), work_sending);
    other.inbox = InboxKind::Maildir;
    EXPECT_EQ(password_key(other, MailUse::Reading).account, "");
}

TEST_F(Passwords, DoNotGoToAnotherServer)
{
    passwords.keep(work, "a");
    passwords.keep(work_sending, "b");
    const MailProfile moved = profile("Club", "imap.evil.example");
    EXPECT_TRUE(passwords.take_along(profile("Work"), moved));
    EXPECT_EQ(passwords.find(password_key(moved, MailUse::Reading)).answer, StoreAnswer::Absent);
    EXPECT_EQ(passwords.find(work).answer, StoreAnswer::Absent);
    EXPECT_EQ(keychain.entries, (std::map<QString, QString>{{"club" + at_sending, "b"}}));
    MailProfile local = moved;
    local.outgoing = OutgoingKind::Sendmail;
    EXPECT_TRUE(passwords.take_along(moved, local));
    EXPECT_TRUE(keychain.entries.empty());
}

TEST_F(Passwords, OfAProfileWithoutANameBelongToTheirServerToo)
{
    passwords.hold(password_key(profile({}), MailUse::Reading), "typed");
    const MailProfile next = profile({}, "imap.evil.example");
    EXPECT_EQ(passwords.find(password_key(next, MailUse::Reading)).answer, StoreAnswer::Absent);
}

TEST_F(Passwords, AreNotAskedAboutWhereNothingOfThemChanged)
{
    keychain.answers = false;
    EXPECT_TRUE(passwords.take_along(profile("Work"), profile("WORK")));
    EXPECT_TRUE(passwords.take_along(MailProfile(), profile("Work")));
    EXPECT_TRUE(passwords.remove_all(MailProfile()));
    EXPECT_FALSE(passwords.take_along(profile("Work"), profile("Work", "imap.evil.example")));
}

TEST_F(Passwords, AreForgottenWithoutAKeychainToo)
{
    keychain.answers = false;
    passwords.hold(work, "a");
    passwords.hold(work_sending, "b");
    EXPECT_FALSE(passwords.remove_all(profile("work")));
    EXPECT_EQ(passwords.find(work).answer, StoreAnswer::NoStore);
    EXPECT_EQ(passwords.find(work_sending).answer, StoreAnswer::NoStore);
    keychain.answers = true;
    EXPECT_TRUE(passwords.remove_all(profile("Work")));
}

// Whether any file below the folder holds these bytes.
bool is_written_below(const QString &folder, const QByteArray &bytes)
{
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly) && file.readAll().contains(bytes))
            return true;
    }
    return false;
}

TEST(Keychain, WithoutASessionBusThereIsNoStoreAndNothingIsWritten)
{
    const PrivateHome home;
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    KeychainPasswords keychain;
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(keychain.read(work).answer, StoreAnswer::NoStore);
    EXPECT_EQ(keychain.write(work, "in-the-clear"), StoreAnswer::NoStore);
    EXPECT_EQ(keychain.remove(work), StoreAnswer::NoStore);
    EXPECT_LT(clock.elapsed(), 3 * 4500);
    EXPECT_FALSE(is_written_below(home.path(), "in-the-clear"));
}

/// A session bus of the test's own, with a keychain (servers/secret_service.py).
class DesktopKeychain : public testing::Test
{
protected:
    ~DesktopKeychain() override
    {
        for (QProcess *process : {&service_, &bus_}) {
            process->kill();
            process->waitForFinished();
        }
    }

    void start(const QStringList &how)
    {
        bus_.start("dbus-daemon", {"--session", "--nofork", "--print-address",
                                   "--address=unix:dir=" + home_.path()});
        qputenv("DBUS_SESSION_BUS_ADDRESS", first_line_of(bus_));
        qputenv("XDG_CURRENT_DESKTOP", "GNOME"); // the kind of keychain
        service_.start("/usr/bin/python3",
                       QStringList{OSTRIX_MAIL_SERVERS "/secret_service.py"} + how);
        ASSERT_EQ(first_line_of(service_), "ready");
    }
    StoredPassword read(const KeychainPatience &patience)
    {
        QElapsedTimer clock;
        clock.start();
        const StoredPassword found = KeychainPasswords(patience).read(work);
        waited = std::chrono::milliseconds(clock.elapsed());
        return found;
    }

    std::chrono::milliseconds waited{};

private:
    static QByteArray first_line_of(QProcess &process)
    {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        while (process.state() != QProcess::NotRunning && !process.canReadLine())
            process.waitForReadyRead();
        return process.readLine().trimmed();
    }

    PrivateHome home_;
    QProcess bus_;
    QProcess service_;
};

TEST_F(DesktopKeychain, GivesWhatItHas)
{
    start({"answers"});
    const StoredPassword found = read({});
    EXPECT_EQ(found.answer, StoreAnswer::Done);
    EXPECT_EQ(found.password, "kept");
}

TEST_F(DesktopKeychain, IsWaitedForWhileAPersonUnlocksIt)
{
    start({"asks", "3"});
    const StoredPassword found = read({2s, 60s});
    EXPECT_EQ(found.answer, StoreAnswer::Done);
    EXPECT_EQ(found.password, "kept");
    EXPECT_GE(waited, 2500ms);
}

TEST_F(DesktopKeychain, IsNotWaitedForForEver)
{
    start({"asks", "60"});
    EXPECT_EQ(read({2s, 3s}).answer, StoreAnswer::NoStore);
    EXPECT_GE(waited, 2900ms);
    EXPECT_LT(waited, 20s);
}

TEST_F(DesktopKeychain, IsGivenUpWhenItHangs)
{
    start({"hangs"});
    EXPECT_EQ(read({400ms, 60s}).answer, StoreAnswer::NoStore);
    EXPECT_LT(waited, 20s);
}
} // namespace
