// The log's buttons, through the window.
#include "tests/support/program_window.h"

#include <QDir>

namespace
{
const QString log_log = "c:\\Ostrix\\log.log";
const QString system_log = "c:\\Ostrix\\system.log";
const QString clear_question = "This will permanently delete the log file contents. Are you sure?";
const QString path_question = "This will change the path to the log file. Do you wish to proceed?";

class LogCommands : public ProgramWindow
{
};

TEST_F(LogCommands, LogWritesTheBoxToBothFilesAndKeepsItsText)
{
    set_text("Text27", "\r\nann@example.org");
    click("Command1");
    set_text("Text27", "\r\nbob@example.org");
    click("Command1");
    EXPECT_EQ(content(log_log), "2026-03-04 05:06:07\r\nann@example.org\r\n"
                                "2026-03-04 05:06:07\r\nbob@example.org\r\n");
    EXPECT_EQ(content(system_log), "2026-03-04 05:06:07\r\nbob@example.org\r\n");
    EXPECT_EQ(text("Text27"), "\r\nbob@example.org");
}

TEST_F(LogCommands, LogLeavesNoPleaseWaitBehind)
{
    click("Command1");
    EXPECT_EQ(window().findChild<QWidget *>("PleaseWait"), nullptr);
}

TEST_F(LogCommands, LogGoesToTheFixedFileWhileViewFollowsThePath)
{
    const QString other = home.file("other.log");
    write_file(other, "one\r\ntwo\r\n");
    settings.write("log file", other);
    set_text("Text27", "\r\nann@example.org");
    click("Command1");
    EXPECT_EQ(content(log_log), "2026-03-04 05:06:07\r\nann@example.org\r\n");
    click("Command38");
    EXPECT_EQ(text("Text27"), "\r\none\r\ntwo");
}

TEST_F(LogCommands, ViewShowsOneLineMoreThanTheFileHas)
{
    write_file(log_log, "a\r\n\r\nb");
    set_text("Text27", "before");
    click("Command38");
    EXPECT_EQ(text("Text27"), "\r\na\r\n\r\nb");
}

TEST_F(LogCommands, ViewOfAnEmptyOrAMissingFileLeavesTheBoxEmptyAndSaysNothing)
{
    write_file(log_log, "");
    set_text("Text27", "before");
    click("Command38");
    EXPECT_EQ(text("Text27"), "");
    for (const QString &path :
         {home.file("missing.log"), QString(), home.path(), QString("d:\\x")}) {
        set_text("Text27", "before");
        set_text("Text17", path);
        click("Command38");
        EXPECT_EQ(text("Text27"), "") << path.toStdString();
    }
}

TEST_F(LogCommands, ClearEmptiesTheNamedFileAloneAndTheBox)
{
    write_file(log_log, "a\r\n");
    write_file(system_log, "b\r\n");
    set_text("Text27", "before");
    boxes.expect_ok_cancel(clear_question, true);
    boxes.expect_notice("The log file contents have been permanently deleted",
                        NoticeIcon::Exclamation);
    click("Command39");
    EXPECT_EQ(content(log_log), "");
    EXPECT_EQ(content(system_log), "b\r\n");
    EXPECT_EQ(text("Text27"), "");
}

TEST_F(LogCommands, ClearMakesAMissingFile)
{
    boxes.expect_ok_cancel(clear_question, true);
    boxes.expect_notice("The log file contents have been permanently deleted",
                        NoticeIcon::Exclamation);
    click("Command39");
    EXPECT_EQ(content(log_log), "");
}

TEST_F(LogCommands, ClearStopsAtCancel)
{
    write_file(log_log, "a\r\n");
    set_text("Text27", "before");
    boxes.expect_ok_cancel(clear_question, false);
    click("Command39");
    EXPECT_EQ(content(log_log), "a\r\n");
    EXPECT_EQ(text("Text27"), "before");
}

TEST_F(LogCommands, SetPathStoresTheChosenPath)
{
    const QString other = home.file("other.log");
    write_file(other, "");
    boxes.expect_ok_cancel(path_question, true);
    boxes.expect_open_file(other);
    boxes.expect_notice("The log file path has been changed", NoticeIcon::Information);
    click("Command40");
    EXPECT_EQ(text("Text17"), other);
    EXPECT_EQ(settings.read("log file"), other);
}

TEST_F(LogCommands, SetPathWithoutAFileChangesNothing)
{
    boxes.expect_ok_cancel(path_question, true);
    boxes.expect_open_file("");
    boxes.expect_notice("You must give the path to the log file.", NoticeIcon::Exclamation);
    click("Command40");
    EXPECT_EQ(text("Text17"), log_log);
    EXPECT_EQ(settings.read("log file"), log_log);
}

TEST_F(LogCommands, SetPathStopsAtCancel)
{
    boxes.expect_ok_cancel(path_question, false);
    click("Command40");
    EXPECT_EQ(settings.read("log file"), log_log);
}

using LogCommandsDeathTest = LogCommands;

TEST_F(LogCommandsDeathTest, WithoutTheFolderWritingEndsTheProgram)
{
    const auto fail = [this] {
        window();
        QDir(home.file("data/Ostrix")).removeRecursively();
        boxes.expect_run_time_error("x");
        click("Command1");
    };
    EXPECT_EXIT(fail(), testing::ExitedWithCode(1), "Run-time error '76':");
}
} // namespace
