#include "app/settings_store.h"
#include "platform/runtime_error.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace
{
class Settings : public testing::Test
{
protected:
    PrivateHome home;
    SettingsStore store;
    QString file() const { return home.file("config/Pendral/eAPP.ini"); }

    QByteArray content() const
    {
        QFile stored(file());
        return stored.open(QIODevice::ReadOnly) ? stored.readAll() : QByteArray("(none)");
    }
};

TEST_F(Settings, AnAbsentKeyReadsAsTheDefault)
{
    EXPECT_EQ(store.read("Filter"), "");
    EXPECT_EQ(store.read("Database", "0"), "0");
    EXPECT_FALSE(QFileInfo::exists(file()));
}

TEST_F(Settings, AnEmptyValueIsNotAnAbsentOne)
{
    store.write("Database", "");
    EXPECT_EQ(store.read("Database", "0"), "");
}

TEST_F(Settings, NamesAreMatchedWithoutRegardToCase)
{
    store.write("Profile", "Home");
    EXPECT_EQ(store.read("pendral", "eapp", "profile", ""), "Home");
    store.write("PROFILE", "Work");
    EXPECT_EQ(store.read("Profile"), "Work");
    EXPECT_EQ(content(), "Profile=Work\n");
}

TEST_F(Settings, OneLineAKeyReadableByTheOwnerAlone)
{
    store.write("log file", "c:\\Ostrix\\log.log");
    store.write("Filter", "a=b");
    EXPECT_EQ(content(), "log file=c:\\Ostrix\\log.log\nFilter=a=b\n");
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                        QFile::WriteOther | QFile::ExeOther;
    EXPECT_EQ(QFileInfo(file()).permissions() & others, QFile::Permissions());
}

TEST_F(Settings, EveryValueComesBackAsItWasWritten)
{
    const QStringList values = {" blanks ", "two\r\nlines", "C:\\new\\r\\\\n", "\\",  "=",    "#x",
                                "%0A",      "100%",         "%250D",           "[x]", u"ä"_qs};
    for (const QString &value : values) {
        store.write("Filter", value);
        EXPECT_EQ(store.read("Filter"), value);
    }
}

TEST_F(Settings, APathWrittenByHandIsTakenAsItIs)
{
    QDir().mkpath(home.file("config/Pendral"));
    QFile stored(file());
    ASSERT_TRUE(stored.open(QIODevice::WriteOnly));
    stored.write("Database=C:\\news\\recent.mdb\n");
    stored.close();
    EXPECT_EQ(store.read("Database"), "C:\\news\\recent.mdb");
}

TEST_F(Settings, LinesOfAPersonsOwnAreKeptAndEverySpellingOfAKeyIsRemoved)
{
    QDir().mkpath(home.file("config/Pendral"));
    QFile stored(file());
    ASSERT_TRUE(stored.open(QIODevice::WriteOnly));
    stored.write("# my list\nFilter=a\nFILTER=b\n\nDelete=c\n");
    stored.close();
    store.remove("filter");
    EXPECT_EQ(content(), "# my list\n\nDelete=c\n");
}

TEST_F(Settings, RemovingAKeyLeavesTheOthers)
{
    store.write("Filter", "a");
    store.write("Filter1", "b");
    store.remove("filter");
    EXPECT_EQ(content(), "Filter1=b\n");
    EXPECT_THROW(store.remove("Filter"), RuntimeError);
}

TEST_F(Settings, AFolderThatCannotBeWrittenIsAnErrorAndNotASilentLoss)
{
    QFile blocker(home.file("config/Pendral"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    EXPECT_THROW(store.write("Filter", "x"), RuntimeError);
}
} // namespace
