#include "tests/support/program_window.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QMenuBar>
#include <QTest>
#include <gtest/gtest.h>

namespace
{
class ImportCommand : public ProgramWindow
{
protected:
    void expect_import_of(const QString &path)
    {
        boxes.expect_notice(
            "Importing large lists can take some time and it may seem that the program has crashed "
            "when in fact it has not. Please allow processes to complete. As an estimate, consider "
            "that importing 1,000 entries may take upto five minutes and therefore importing "
            "10,000 entries may take upto fifty minutes.");
        boxes.expect_notice("You will now be asked to choose a file from which to import email "
                            "addresses. This file must be in the correct format else an error will "
                            "occur.");
        boxes.expect_open_file(path, "All files (*.*)");
    }
    QWidget *window_named(const QString &name) { return window().findChild<QWidget *>(name); }
};

TEST_F(ImportCommand, StoresAndShowsWhatTheFileHolds)
{
    write_file("C:\\Ostrix\\list.csv", "a@x.org\r\nb@x.org\r\nc@x.org\r\n");
    expect_import_of(home.file("data/Ostrix/list.csv"));
    choose("Import");
    EXPECT_EQ(rows("master", "email"), (QStringList{"b@x.org", "a@x.org"}));
    EXPECT_EQ(grid("MSFlexGrid5"), (QStringList{"b@x.org|", "a@x.org|"}));
    EXPECT_EQ(window_named("frmIMport"), nullptr);
    EXPECT_EQ(window_named("PleaseWait"), nullptr);
    EXPECT_EQ(text("progress_text"), "");
}

TEST_F(ImportCommand, LooksInTheDataFolderFirst)
{
    expect_import_of({});
    QString folder;
    boxes.before_next_answer([&] {
        boxes.before_next_answer([&] {
            boxes.before_next_answer([&] {
                folder = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())
                             ->directory()
                             .path();
            });
        });
    });
    choose("Import");
    EXPECT_EQ(folder, home.file("data/Ostrix"));
}

TEST_F(ImportCommand, ThatFailsLeavesItsWindowsAndTheProgramRunning)
{
    write_file("C:\\Ostrix\\list.csv", "no address\r\n");
    expect_import_of(home.file("data/Ostrix/list.csv"));
    boxes.expect_notice(
        "An error occurred. Most probably the file being imported was not in the correct format. "
        "Please ensure the file is in CSV format containing only email addresses. You can use the "
        "Ostrix text manipulator to make a CSV file of the correct format. To use the Ostrix text "
        "manipulator goto File>Make A Text File Into a CSV File For Import");
    choose("Import");
    ASSERT_NE(window_named("frmIMport"), nullptr);
    EXPECT_TRUE(window_named("frmIMport")->isVisible());
    EXPECT_TRUE(window_named("PleaseWait")->isVisible());
    boxes.expect_save_file(home.file("saved.txt"), "Text files (*.*)");
    window_named("frmIMport")->findChild<QAction *>("SaveAs")->trigger();
    EXPECT_EQ(content(home.file("saved.txt")), "\r\n");
    window_named("frmIMport")->close();
    close_window();
}

TEST_F(ImportCommand, AfterAPrintGoesToTheTableThatWasPrinted)
{
    write_file("C:\\Ostrix\\list.csv", "a@x.org,b@x.org");
    boxes.expect_notice("Finished!");
    choose("PrintAddresses");
    expect_import_of(home.file("data/Ostrix/list.csv"));
    choose("Import");
    EXPECT_EQ(rows("email", "email"), QStringList{"a@x.org"});
    EXPECT_EQ(rows("master", "email"), QStringList());
}

TEST_F(ImportCommand, WindowHasItsMenu)
{
    write_file("C:\\Ostrix\\list.csv", "no address\r\n");
    expect_import_of(home.file("data/Ostrix/list.csv"));
    boxes.expect_any_notice();
    choose("Import");
    const auto titles = window_named("frmIMport")->findChild<QMenuBar *>()->actions();
    ASSERT_EQ(titles.size(), 1);
    EXPECT_EQ(titles[0]->text(), "File");
}

TEST_F(ImportCommand, OfAThousandAddressesIsOneRowAtATime)
{
    QByteArray list;
    for (int i = 1; i <= 1001; ++i)
        list += "reader" + QByteArray::number(i) + "@example.org\n";
    write_file("C:\\Ostrix\\list.csv", list);
    expect_import_of(home.file("data/Ostrix/list.csv"));
    choose("Import");
    const QStringList stored = rows("master", "email");
    ASSERT_EQ(stored.size(), 1000);
    EXPECT_EQ(stored.first(), "reader1000@example.org");
    EXPECT_EQ(stored.last(), "reader1@example.org");
}

TEST_F(ImportCommand, TheHelpMessageSaysHow)
{
    boxes.expect_notice(
        "To Import from Outlook Express, use Outlook's export facility to export eMail addresses "
        "to a CSV file.\nThen use Lumiset's IMPORT function ( File > Import ) to add those "
        "addresses to the database");
    choose("ImportHelp");
}
} // namespace
