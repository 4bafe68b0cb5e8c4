#include "mail/keychain_passwords.h"
#include "tests/support/password_fakes.h"
#include "tests/support/private_home.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

namespace
{
const PasswordKey work{"Work", MailUse::Reading};
const PasswordKey work_sending{"Work", MailUse::Sending};

class Passwords : public testing::Test
{
protected:
    FakeKeychain keychain;
    SessionPasswords passwords{keychain};
};

TEST_F(Passwords, AreHeldForTheSessionAndNotStored)
{
    passwords.hold(work, "secret");
    EXPECT_EQ(passwords.find({"WORK", MailUse::Reading}).password, "secret");
    EXPECT_EQ(passwords.find(work_sending).answer, StoreAnswer::Absent);
    EXPECT_TRUE(keychain.entries.empty());
    passwords.release(work);
    EXPECT_EQ(passwords.find(work).answer, StoreAnswer::Absent);
}

TEST_F(Passwords, AreAskedOfTheKeychainOnce)
{
    keychain.entries["work inbox"] = "stored";
    EXPECT_EQ(passwords.find(work).password, "stored");
    EXPECT_EQ(passwords.find(work).password, "stored");
    EXPECT_EQ(keychain.reads, 1);
}

TEST_F(Passwords, AreKeptInTheKeychainWhenItAnswers)
{
    EXPECT_TRUE(passwords.keep(work, "secret"));
    EXPECT_EQ(keychain.entries["work inbox"], "secret");
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
    EXPECT_TRUE(passwords.rename("Work", "Club"));
    EXPECT_EQ(keychain.entries,
              (std::map<QString, QString>{{"club inbox", "a"}, {"club sending", "b"}}));
    EXPECT_EQ(passwords.find({"Club", MailUse::Sending}).password, "b");
    EXPECT_EQ(passwords.find(work).answer, StoreAnswer::Absent);
    EXPECT_TRUE(passwords.rename("Club", "CLUB"));
    passwords.remove_all("club");
    EXPECT_TRUE(keychain.entries.empty());
    EXPECT_EQ(passwords.find({"Club", MailUse::Reading}).answer, StoreAnswer::Absent);
}

TEST_F(Passwords, HeldOnesGoToTheNewNameToo)
{
    passwords.hold(work, "a");
    EXPECT_TRUE(passwords.rename("Work", "Club"));
    EXPECT_EQ(passwords.find({"Club", MailUse::Reading}).password, "a");
    EXPECT_TRUE(keychain.entries.empty());
    keychain.answers = false;
    EXPECT_FALSE(passwords.rename("Club", "Work"));
    EXPECT_EQ(passwords.find(work).password, "a");
    EXPECT_EQ(passwords.find({"Club", MailUse::Reading}).answer, StoreAnswer::NoStore);
}

TEST_F(Passwords, AreForgottenWithoutAKeychainToo)
{
    keychain.answers = false;
    passwords.hold(work, "a");
    passwords.hold(work_sending, "b");
    EXPECT_FALSE(passwords.remove_all("work"));
    EXPECT_EQ(passwords.find(work).answer, StoreAnswer::NoStore);
    EXPECT_EQ(passwords.find(work_sending).answer, StoreAnswer::NoStore);
    keychain.answers = true;
    EXPECT_TRUE(passwords.remove_all("Work"));
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
} // namespace
