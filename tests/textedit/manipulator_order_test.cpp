// The order in which the manipulator's commands do their steps, and where the event loop gets a
// turn.
#include "platform/long_text_box.h"
#include "tests/support/turn_journal.h"
#include "tests/textedit/manipulator_window.h"
#include "tests/transfer/transfer_room.h"
#include "textedit/text_manipulator.h"

#include <QFile>
#include <QLineEdit>
#include <QPushButton>

#include <new>

namespace
{
class ManipulatorSteps : public TransferRoom
{
protected:
    ManipulatorSteps()
    {
        prompts.after_each_box([this] { turns.await_turn(); });
        tool.open();
        journal_changes_of("Text3");
        journal_changes_of("Text4");
        write_file(file, "a@x\nnobody\n");
        QCoreApplication::processEvents();
        journal.clear();
    }
    LongTextBox &box(const QString &name) { return *tool.findChild<LongTextBox *>(name); }
    void journal_changes_of(const QString &name)
    {
        QObject::connect(&box(name), &LongTextBox::textChanged, &tool, [this, name] {
            const QString line = name + ": " + box(name).text();
            if (journal.isEmpty() || journal.last() != line)
                journal.append(line);
        });
    }
    void pick(const QString &entry) { tool.findChild<QAction *>(entry)->trigger(); }
    void press(const QString &button) { tool.findChild<QPushButton *>(button)->click(); }

    const QString file = home.file("list.txt");
    TurnJournal turns{journal, {"PleaseWait"}};
    TextManipulator tool{{engine, prompts, please_wait, *this, handlers, [] {}}, &parent};
};

TEST_F(ManipulatorSteps, OfGetFile)
{
    prompts.will_answer(file);
    pick("GetFile");
    EXPECT_EQ(journal, (QStringList{"notice: " + ManipulatorWindow::large_files, "turn",
                                    "open file: All files (*.*)|*.* in c:\\Ostrix\\", "turn",
                                    "PleaseWait", "turn", "Text3: a@x\r\nnobody\r\n"}));
}

TEST_F(ManipulatorSteps, GetFileOpensTheFileBeforeTheTurn)
{
    prompts.will_answer(file);
    prompts.after_each_box([this] {
        if (journal.size() == 2) // the file has been chosen
            QMetaObject::invokeMethod(
                &tool, [this] { QFile::remove(file); }, Qt::QueuedConnection);
    });
    pick("GetFile");
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(box("Text3").text(), "a@x\r\nnobody\r\n");
}

TEST_F(ManipulatorSteps, OfNextLine)
{
    box("Text3").set_text("A,B,");
    journal.clear();
    prompts.will_answer({true});
    press("Command2");
    EXPECT_EQ(journal, (QStringList{"OK or cancel: " + ManipulatorWindow::put_into_format, "turn",
                                    "Text4: B\r\nA\r\n", "Text3: B\r\nA\r\n"}));
}

TEST_F(ManipulatorSteps, OfRemoveLines)
{
    box("Text4").set_text("old");
    tool.findChild<QLineEdit *>("Text6")->setText("@");
    journal.clear();
    prompts.will_answer(file);
    press("Command3");
    EXPECT_EQ(journal, (QStringList{"information: " + ManipulatorWindow::only_from_a_file, "turn",
                                    "open file: Text files (*.*)|*.* in c:\\Ostrix\\", "PleaseWait",
                                    "Text4: ", "turn", "turn", "Text4: a@x\r\n", "Text3: a@x\r\n",
                                    "notice: finished!"}));
    EXPECT_FALSE(please_wait.is_shown());
}

// A file that opens and cannot be read.
TEST_F(ManipulatorSteps, RemoveLinesThatCannotReadEndsQuietlyWithItsWorkBoxEmpty)
{
    box("Text3").set_text("kept");
    box("Text4").set_text("old");
    tool.findChild<QLineEdit *>("Text6")->setText("@");
    prompts.will_answer(QString("/proc/self/mem"));
    press("Command3");
    EXPECT_EQ(box("Text4").text(), "");
    EXPECT_EQ(box("Text3").text(), "kept");
    EXPECT_FALSE(please_wait.is_shown());
    EXPECT_TRUE(journal.last() != "notice: finished!");
}

// Memory that runs out is an error, too.
TEST_F(ManipulatorSteps, WithoutMemoryForThemEndQuietlyAndClosePleaseWait)
{
    tool.findChild<QLineEdit *>("Text6")->setText("@");
    for (const char *button : {"Command2", "Command3"}) {
        please_wait.show();
        prompts.after_each_box([] { throw std::bad_alloc(); });
        press(button);
        EXPECT_FALSE(please_wait.is_shown()) << button;
    }
}

TEST_F(ManipulatorSteps, SavingNamesNoFolder)
{
    prompts.will_answer(home.file("kept.csv"));
    prompts.will_answer(home.file("kept.txt"));
    pick("SaveFile");
    pick("SaveFiletxt");
    EXPECT_EQ(journal.filter("save file"), (QStringList{"save file: All files (*.csv)|*.csv in ",
                                                        "save file: All files (*.txt)|*.txt in "}));
}

TEST_F(ManipulatorSteps, ExportCleanBeginsInTheDataFolderWithoutANotice)
{
    prompts.will_answer(home.file("clean.txt"));
    pick("ExportClean");
    EXPECT_EQ(
        journal.filter(": "),
        (QStringList{"save file: All Files (*.txt)|*.txt in c:\\Ostrix\\", "notice: Finished!"}));
}
} // namespace
