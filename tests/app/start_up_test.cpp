// Start-up: the defaults, the first start, a database that cannot be opened; and the two notices of
// the menus.
#include "platform/drive_path.h"
#include "tests/support/program_window.h"

#include <QDir>
#include <QLineEdit>
#include <QProcess>
#include <QTableView>
#include <QTest>

namespace
{
class StartUpOfTheProgram : public ProgramWindow
{
protected:
    /// As on a machine where the program has never run.
    void forget_everything()
    {
        settings.remove("Database");
        QDir(data_folder()).removeRecursively();
    }
    static bool exists(const QString &path) { return QFile::exists(native_path(path)); }
};

TEST_F(StartUpOfTheProgram, AFirstStartStoresAndShowsTheDefaults)
{
    forget_everything();
    EXPECT_EQ(text("Text17"), "c:\\Ostrix\\log.log");
    EXPECT_EQ(text("Text25"), "C:\\Ostrix\\Ostrix.mdb");
    EXPECT_EQ(settings.read("log file"), "c:\\Ostrix\\log.log");
    EXPECT_EQ(settings.read("Database"), "C:\\Ostrix\\Ostrix.mdb");
    EXPECT_EQ(caption_of_current_tab(), "View Master Table");
}

TEST_F(StartUpOfTheProgram, AFirstStartPreparesWhatAnInstallerWouldLeave)
{
    forget_everything();
    window();
    for (const char *path : {"C:\\Ostrix\\Ostrix.mdb", "C:\\Velmoradrane.mdb",
                             "C:\\Ostrix\\Ostrix.hlp", "C:\\Ostrix\\help.bat"})
        EXPECT_TRUE(exists(path)) << path;
    for (const char *table : {"system", "master", "email", "email2", "import"})
        EXPECT_EQ(rows(table), QStringList{}) << table;
    EXPECT_TRUE(content("C:\\Ostrix\\Ostrix.hlp").contains("<title>Ostrix Help</title>"));
}

TEST_F(StartUpOfTheProgram, AFirstStartKeepsWhatIsThere)
{
    add_master({"ann@example.org"});
    settings.remove("Database");
    write_file("C:\\Ostrix\\help.bat", "mine");
    EXPECT_EQ(grid("MSFlexGrid5"), QStringList{"ann@example.org|"});
    EXPECT_EQ(content("C:\\Ostrix\\help.bat"), "mine");
}

TEST_F(StartUpOfTheProgram, AFirstStartThatCannotPrepareTellsAndOpensTheWindow)
{
    forget_everything();
    write_file(data_folder(), "a file where the folder belongs");
    boxes.expect_notice("The folder 'C:\\Ostrix' cannot be made", NoticeIcon::Exclamation);
    boxes.expect_any_notice(NoticeIcon::Exclamation);
    boxes.expect_any_notice(NoticeIcon::Exclamation);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(StartUpOfTheProgram, AStoredDatabaseIsKeptToldWhenItIsMissingAndNeverMade)
{
    const QString missing = home.file("missing.mdb");
    settings.write("Database", missing);
    boxes.expect_any_notice(NoticeIcon::Exclamation);
    boxes.expect_any_notice(NoticeIcon::Exclamation);
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(boxes.shown().size(), 2); // one for each connection
    for (const QString &told : boxes.shown())
        EXPECT_TRUE(told.contains(missing)) << told.toStdString();
    EXPECT_EQ(text("Text25"), missing);
    EXPECT_EQ(settings.read("Database"), missing);
    EXPECT_EQ(grid("MSFlexGrid1"), QStringList{});
    EXPECT_EQ(grid("MSFlexGrid5"), QStringList{});
    EXPECT_FALSE(QFile::exists(missing));
}

TEST_F(StartUpOfTheProgram, StoredValuesAreShownAndNoOtherSettingIsRead)
{
    settings.write("log file", "/var/tmp/other.log");
    for (const char *key : {"Delete", "Filter", "Filter1", "Filter2", "Profile", "Table"})
        settings.write(key, "stored");
    EXPECT_EQ(text("Text17"), "/var/tmp/other.log");
    for (const char *box : {"Text10", "Text9", "Text28", "Text29", "Text3", "Text2"})
        EXPECT_EQ(text(box), "") << box;
    EXPECT_EQ(mail.calls, QStringList{});
}

TEST_F(StartUpOfTheProgram, TheGridsShowTheTwoTables)
{
    add_master({"ann@example.org", "bob@example.org"});
    add_system("cyd@example.org", "hello");
    EXPECT_EQ(grid("MSFlexGrid5"), (QStringList{"ann@example.org|", "bob@example.org|"}));
    EXPECT_EQ(grid("MSFlexGrid1"), QStringList{"cyd@example.org|hello|||"});
}

TEST_F(StartUpOfTheProgram, ColumnsAreAsWideAsInTwips)
{
    const auto widths = [this](const char *name) {
        const auto &view = control<QTableView>(name);
        QList<int> found;
        for (int i = 0; i < view.model()->columnCount(); ++i)
            found.append(view.columnWidth(i));
        return found;
    };
    EXPECT_EQ(widths("MSFlexGrid5"), (QList<int>{167, 200}));
    EXPECT_EQ(widths("MSFlexGrid1"), (QList<int>{167, 200, 233, 333, 167}));
}

TEST_F(StartUpOfTheProgram, AColumnThatComesBackHasItsWidth)
{
    window().master_list().set_record_source("select distinct email from master");
    window().master_list().refresh();
    EXPECT_EQ(grid("MSFlexGrid5"), QStringList{});
    window().master_list().set_record_source("select * from master");
    window().master_list().refresh();
    grid("MSFlexGrid5");
    EXPECT_EQ(control<QTableView>("MSFlexGrid5").columnWidth(1), 200);
}

TEST_F(StartUpOfTheProgram, BackupIsANoticeOnly)
{
    boxes.expect_notice("The easiest way is to backup the database is to close this application "
                        "and copy and past c:\\Ostrix\\Ostrix.mdb...this path may be different if "
                        "you are not using the default settings...into a new location.");
    choose("Backup");
}

const QString help_notice =
    "If the help file does not appear within a few seconds just search for and double click on "
    "Ostrix.hlp. It's usually in the C:\\Ostrix\\ folder";

TEST_F(StartUpOfTheProgram, HelpFileRunsTheLauncherAfterItsNotice)
{
    // The name is matched without regard to letter case.
    write_file("C:\\Ostrix\\Help.BAT", "echo \"ran\" > \"$(dirname \"$0\")/ran\"\n");
    boxes.expect_notice(help_notice);
    boxes.before_next_answer([this] { EXPECT_FALSE(exists("C:\\Ostrix\\ran")); });
    choose("HelpFile");
    EXPECT_TRUE(QTest::qWaitFor([] { return content("C:\\Ostrix\\ran") == "ran\n"; }));
}

using StartUpOfTheProgramDeathTest = StartUpOfTheProgram;

TEST_F(StartUpOfTheProgramDeathTest, AMissingLauncherEndsTheProgram)
{
    const auto fail = [this] {
        boxes.expect_notice(help_notice);
        boxes.expect_run_time_error(
            "Run-time error '53':\n\nFile not found: 'C:\\ostrix\\help.bat'");
        choose("HelpFile");
    };
    EXPECT_EXIT(fail(), testing::ExitedWithCode(1), "Run-time error '53':");
}
} // namespace
