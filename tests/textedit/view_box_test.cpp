// The commands on the view box, and those that read and save its files.
#include "platform/long_text_box.h"
#include "tests/textedit/manipulator_window.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace
{
using ViewBox = ManipulatorWindow;

TEST_F(ViewBox, IsTypedInto)
{
    QTest::keyClicks(&tool<LongTextBox>("Text3"), "a@x");
    QTest::keyClick(&tool<LongTextBox>("Text3"), Qt::Key_Return);
    QTest::keyClicks(&tool<LongTextBox>("Text3"), "b@x");
    EXPECT_EQ(box_text("Text3"), "a@x\r\nb@x");
}

TEST_F(ViewBox, ReplaceReplacesEveryOccurrenceAndMindsLetterCase)
{
    set_box_text("Text3", "Ann, ann, ANN, annann\r\nann");
    enter("Text1", "ann");
    enter("Text2", "bob");
    press("Command1");
    EXPECT_EQ(box_text("Text3"), "Ann, bob, ANN, bobbob\r\nbob");
}

TEST_F(ViewBox, ReplaceWithNothingToFindChangesNothing)
{
    set_box_text("Text3", "abc");
    enter("Text2", "x");
    press("Command1");
    EXPECT_EQ(box_text("Text3"), "abc");
}

TEST_F(ViewBox, ReplaceByNothingRemoves)
{
    set_box_text("Text3", "<a@x>, <b@x>");
    enter("Text1", "<");
    press("Command1");
    enter("Text1", ">");
    press("Command1");
    EXPECT_EQ(box_text("Text3"), "a@x, b@x");
}

TEST_F(ViewBox, ReplaceTakesAPastedLineBreak)
{
    set_box_text("Text3", "a@x\r\nb@x\r\n");
    QApplication::clipboard()->setText("\n");
    QTest::keyClick(&tool<QLineEdit>("Text1"), Qt::Key_V, Qt::ControlModifier);
    enter("Text2", ",");
    press("Command1");
    EXPECT_EQ(box_text("Text3"), "a@x,b@x,");
}

TEST_F(ViewBox, ReplaceTakesTextsOfAnyLength)
{
    const QString wanted(40'000, 'x');
    set_box_text("Text3", "a" + wanted + "b");
    for (const char *box : {"Text1", "Text2", "Text6"}) {
        auto &line = tool<QLineEdit>(box);
        QApplication::clipboard()->setText(wanted + box);
        line.paste();
        EXPECT_EQ(line.text().size(), wanted.size() + 5) << box;
    }
    tool<QLineEdit>("Text1").setText(wanted);
    tool<QLineEdit>("Text2").setText("-");
    press("Command1");
    EXPECT_EQ(box_text("Text3"), "a-b");
}

TEST_F(ViewBox, NextLineDropsTheItemBehindTheLastComma)
{
    set_box_text("Text3", "A,B,C");
    boxes.expect_ok_cancel(put_into_format, true);
    press("Command2");
    EXPECT_EQ(box_text("Text3"), "B\r\nA\r\n");
    EXPECT_EQ(box_text("Text4"), "B\r\nA\r\n");
}

TEST_F(ViewBox, NextLineTurnsTheItemsRound)
{
    set_box_text("Text3", "A,B,C,");
    boxes.expect_ok_cancel(put_into_format, true);
    press("Command2");
    EXPECT_EQ(box_text("Text3"), "C\r\nB\r\nA\r\n");
}

TEST_F(ViewBox, NextLineCancelledLeavesEverything)
{
    set_box_text("Text3", "A,B,");
    set_box_text("Text4", "before");
    leave_please_wait_open();
    boxes.expect_ok_cancel(put_into_format, false);
    press("Command2");
    EXPECT_EQ(box_text("Text3"), "A,B,");
    EXPECT_EQ(box_text("Text4"), "before");
    EXPECT_TRUE(please_wait_is_open());
}

TEST_F(ViewBox, NextLineClosesPleaseWait)
{
    leave_please_wait_open();
    boxes.expect_ok_cancel(put_into_format, true);
    press("Command2");
    EXPECT_EQ(box_text("Text3"), "");
    EXPECT_FALSE(please_wait_is_open());
}

TEST_F(ViewBox, SpacesAndSemicolonsBecomeCommas)
{
    set_box_text("Text3", "A B;C");
    press("Command4");
    EXPECT_EQ(box_text("Text3"), "A,B;C");
    press("Command5");
    EXPECT_EQ(box_text("Text3"), "A,B,C");
}

TEST_F(ViewBox, SpaceIsTheBlankAlone)
{
    set_box_text("Text3", "a  b\tc\r\nd ");
    press("Command4");
    EXPECT_EQ(box_text("Text3"), "a,,b\tc\r\nd,");
}

class GetFile : public ManipulatorWindow
{
protected:
    /// Gets a file that lies in the start folder.
    void get(const QString &name)
    {
        boxes.expect_notice(large_files);
        boxes.expect_open_file(name, "All files (*.*)");
        pick("GetFile");
    }
};

TEST_F(GetFile, PutsTheFileIntoTheViewBox)
{
    const PleaseWaitWatch please_wait;
    write_file("C:\\Ostrix\\list.txt", "a@x\nb@x\r\n\r\nlast");
    set_box_text("Text3", "replaced");
    get("list.txt");
    EXPECT_EQ(box_text("Text3"), "a@x\r\nb@x\r\n\r\nlast\r\n");
    EXPECT_EQ(please_wait.shown(), 1);
    EXPECT_FALSE(please_wait_is_open());
}

TEST_F(GetFile, LeavesTheTextThatIsSavedAlone)
{
    write_file("C:\\Ostrix\\list.txt", "a@x\n");
    set_box_text("RichTextBox1", "before");
    get("list.txt");
    EXPECT_EQ(box_text("RichTextBox1"), "before");
}

TEST_F(GetFile, TakesAnyFileAndAnyEncoding)
{
    const std::map<QByteArray, QString> files{
        {"", ""},
        {"\xEF\xBB\xBF\xC3\xA4", u"ä\r\n"_qs},
        {"\xE4", u"ä\r\n"_qs},
        {QByteArray("\xFF\xFE\xE4\0", 4), u"ä\r\n"_qs},
        {QByteArray("a\0b", 3), QString::fromUtf16(u"a\0b\r\n", 5)}};
    for (const auto &[bytes, expected] : files) {
        write_file("C:\\Ostrix\\list", bytes);
        SCOPED_TRACE(bytes.toHex().toStdString());
        get("list");
        EXPECT_EQ(box_text("Text3"), expected);
    }
}

TEST_F(GetFile, CancelledClosesPleaseWaitAndLeavesTheViewBox)
{
    set_box_text("Text3", "before");
    leave_please_wait_open();
    get({});
    EXPECT_EQ(box_text("Text3"), "before");
    EXPECT_FALSE(please_wait_is_open());
}

TEST_F(GetFile, OfAFileThatHasGoneEndsTheProgram)
{
    expect_end(
        [this] {
            write_file("C:\\Ostrix\\list.txt", "a@x");
            manipulator();
            boxes.expect_notice(large_files);
            boxes.expect_open_file("list.txt", "All files (*.*)");
            boxes.expect_any_notice();
            // Gone when the dialog has taken its name.
            boxes.before_next_answer([this] {
                boxes.before_next_answer([this] {
                    const auto *dialog =
                        qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
                    QObject::connect(dialog, &QFileDialog::accepted,
                                     [this] { QFile::remove(home.file("data/Ostrix/list.txt")); });
                });
            });
            pick("GetFile");
        },
        error_number::file_not_found);
}

class RemoveLines : public ManipulatorWindow
{
protected:
    void expect_nothing_changed()
    {
        EXPECT_EQ(box_text("Text3"), "before");
        EXPECT_EQ(box_text("RichTextBox1"), "saved before");
        EXPECT_FALSE(please_wait_is_open());
    }
    void put_marks()
    {
        set_box_text("Text3", "before");
        set_box_text("RichTextBox1", "saved before");
    }
};

TEST_F(RemoveLines, KeepsTheLinesOfAFileThatHoldTheCharacter)
{
    const PleaseWaitWatch please_wait;
    write_file("C:\\Ostrix\\list.txt", "Name\nb@x\r\n\r\na@x\nno sign");
    enter("Text6", "@");
    remove_lines("list.txt");
    for (const char *name : {"Text3", "Text4", "RichTextBox1"})
        EXPECT_EQ(box_text(name), "b@x\r\na@x\r\n") << name;
    EXPECT_EQ(box_text("Text5"), "no sign");
    EXPECT_EQ(please_wait.shown(), 1);
    EXPECT_FALSE(please_wait_is_open());
}

TEST_F(RemoveLines, SearchesForTheWholeTextOfTheCharacterBox)
{
    write_file("C:\\Ostrix\\list.txt", "a@x.org\nb@y.org\nB@Y.ORG\n");
    enter("Text6", "@y.");
    remove_lines("list.txt");
    EXPECT_EQ(box_text("Text3"), "b@y.org\r\n");
}

TEST_F(RemoveLines, OfAnEmptyFileLeavesAnEmptyViewBox)
{
    put_marks();
    write_file("C:\\Ostrix\\list.txt", "");
    enter("Text6", "@");
    remove_lines("list.txt");
    EXPECT_EQ(box_text("Text3"), "");
    EXPECT_EQ(box_text("RichTextBox1"), "");
}

TEST_F(RemoveLines, TakesTheFileNotTheViewBox)
{
    set_box_text("Text3", "view@x");
    write_file("C:\\Ostrix\\list.txt", "file@x\n");
    enter("Text6", "@");
    remove_lines("list.txt");
    EXPECT_EQ(box_text("Text3"), "file@x\r\n");
}

TEST_F(RemoveLines, ClosesPleaseWaitBeforeItSaysFinished)
{
    write_file("C:\\Ostrix\\list.txt", "a@x\n");
    enter("Text6", "@");
    bool open_at_end = true;
    boxes.before_next_answer([&] {
        boxes.before_next_answer(
            [&] { boxes.before_next_answer([&] { open_at_end = please_wait_is_open(); }); });
    });
    remove_lines("list.txt");
    EXPECT_FALSE(open_at_end);
}

TEST_F(RemoveLines, AsksForACharacterFirst)
{
    put_marks();
    boxes.expect_notice(only_from_a_file, NoticeIcon::Information);
    boxes.expect_notice(some_character);
    press("Command3");
    expect_nothing_changed();
}

TEST_F(RemoveLines, CancelledEndsQuietlyAndClosesPleaseWait)
{
    put_marks();
    set_box_text("Text4", "work");
    leave_please_wait_open();
    enter("Text6", "@");
    boxes.expect_notice(only_from_a_file, NoticeIcon::Information);
    boxes.expect_open_file({}, "Text files (*.*)");
    press("Command3");
    expect_nothing_changed();
    EXPECT_EQ(box_text("Text4"), "work");
}

TEST_F(RemoveLines, OfAFileThatHasGoneEndsQuietly)
{
    put_marks();
    write_file("C:\\Ostrix\\list.txt", "a@x");
    enter("Text6", "@");
    boxes.expect_notice(only_from_a_file, NoticeIcon::Information);
    boxes.expect_open_file("list.txt", "Text files (*.*)");
    boxes.before_next_answer([this] {
        boxes.before_next_answer([this] {
            const auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QObject::connect(dialog, &QFileDialog::accepted,
                             [this] { QFile::remove(home.file("data/Ostrix/list.txt")); });
        });
    });
    press("Command3");
    expect_nothing_changed();
}

class Save : public ManipulatorWindow
{
protected:
    void save(const QString &entry, const QString &path)
    {
        boxes.expect_save_file(path,
                               entry == "SaveFile" ? "All files (*.csv)" : "All files (*.txt)");
        pick(entry);
    }
    void keep_lines_of(const QByteArray &file)
    {
        write_file("C:\\Ostrix\\list.txt", file);
        enter("Text6", "@");
        remove_lines("list.txt");
    }
};

TEST_F(Save, WritesWhatRemoveLinesHasKept)
{
    keep_lines_of("Name\na@x\n\xC3\xA4@x\n");
    save("SaveFile", home.file("a.csv"));
    save("SaveFiletxt", home.file("a.txt"));
    EXPECT_EQ(content(home.file("a.csv")), "a@x\r\n\xC3\xA4@x\r\n");
    EXPECT_EQ(content(home.file("a.txt")), content(home.file("a.csv")));
}

TEST_F(Save, DoesNotWriteTheViewBox)
{
    keep_lines_of("a@x;b@x\n");
    press("Command5");
    EXPECT_EQ(box_text("Text3"), "a@x,b@x\r\n");
    boxes.expect_ok_cancel(put_into_format, true);
    press("Command2");
    QTest::keyClicks(&tool<LongTextBox>("Text3"), "typed");
    save("SaveFiletxt", home.file("a.txt"));
    EXPECT_EQ(content(home.file("a.txt")), "a@x;b@x\r\n");
}

TEST_F(Save, BeforeAnyLinesWereKeptWritesAnEmptyFile)
{
    set_box_text("Text3", "a@x");
    save("SaveFile", home.file("a.csv"));
    EXPECT_EQ(content(home.file("a.csv")), "");
}

TEST_F(Save, CancelledEndsTheProgram)
{
    for (const char *entry : {"SaveFile", "SaveFiletxt"})
        expect_end(
            [this, entry] {
                manipulator();
                boxes.expect_save_file({}, QLatin1String(entry) == QLatin1String("SaveFile")
                                               ? "All files (*.csv)"
                                               : "All files (*.txt)");
                boxes.expect_any_notice();
                pick(entry);
            },
            error_number::bad_file_name_or_number);
}

TEST_F(Save, OverAFolderThatCannotBeWrittenEndsTheProgram)
{
    expect_end(
        [this] {
            manipulator();
            boxes.expect_save_file(home.file("no/such/folder/a.csv"), "All files (*.csv)");
            boxes.expect_any_notice();
            pick("SaveFile");
        },
        error_number::path_not_found);
}
} // namespace
