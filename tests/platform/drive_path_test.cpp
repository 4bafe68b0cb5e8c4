#include "platform/drive_path.h"
#include "platform/runtime_error.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <gtest/gtest.h>

namespace
{
class DrivePath : public testing::Test
{
protected:
    PrivateHome home;
    QString data(const QString &name) const { return home.file("data/" + name); }
};

TEST_F(DrivePath, DriveCIsTheDataFolder)
{
    EXPECT_EQ(native_path("C:\\Ostrix\\Ostrix.mdb"), data("Ostrix/Ostrix.mdb"));
    EXPECT_EQ(native_path("c:/Ostrix/log.log"), data("Ostrix/log.log"));
    EXPECT_EQ(native_path("c:\\"), home.file("data"));
}

TEST_F(DrivePath, ComponentsMatchExistingNamesWithoutRegardToCase)
{
    QDir().mkpath(data("Ostrix"));
    EXPECT_EQ(native_path("c:\\ostrix\\HELP.bat"), data("Ostrix/HELP.bat"));
}

TEST_F(DrivePath, AnExactNameWinsOverAnotherSpelling)
{
    QDir().mkpath(data("ostrix"));
    QDir().mkpath(data("OSTRIX"));
    EXPECT_EQ(native_path("C:\\ostrix\\a"), data("ostrix/a"));
    EXPECT_EQ(native_path("C:\\OSTRIX\\a"), data("OSTRIX/a"));
}

TEST_F(DrivePath, OtherPathsAreNative)
{
    for (const QString path : {"/tmp/a\\b", "relative", "", "C:", "C:file", "x"})
        EXPECT_EQ(native_path(path), path);
}

TEST_F(DrivePath, ThereIsNoOtherDrive)
{
    try {
        native_path("D:\\list.txt");
        FAIL();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), error_number::path_not_found);
        EXPECT_TRUE(error.description().contains("D:\\list.txt"));
    }
}

TEST_F(DrivePath, WithoutAConfiguredFolderItLiesInTheHome)
{
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(native_path("C:\\a"), home.path() + "/.local/share/a");
    qputenv("XDG_DATA_HOME", "relative/is/ignored");
    EXPECT_EQ(native_path("C:\\a"), home.path() + "/.local/share/a");
}
} // namespace
