// The text manipulator's window: what is in it, how it opens and closes.
#include "platform/long_text_box.h"
#include "platform/twips.h"
#include "tests/textedit/manipulator_window.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QTest>

namespace
{
using Manipulator = ManipulatorWindow;

TEST_F(Manipulator, OpensFromTheFileMenuUnderItsNameAndTitle)
{
    EXPECT_FALSE(manipulator_is_open());
    choose("ManipulateText");
    EXPECT_TRUE(manipulator().isVisible());
    EXPECT_TRUE(manipulator().isWindow());
    EXPECT_FALSE(manipulator().isModal());
    EXPECT_EQ(manipulator().objectName(), "TextManipulator");
    EXPECT_EQ(manipulator().windowTitle(), "Text Manipulator");
}

TEST_F(Manipulator, HoldsItsMenu)
{
    auto &bar = tool<QMenuBar>("menus");
    ASSERT_EQ(bar.actions().size(), 1);
    EXPECT_EQ(bar.actions().first()->text(), "File");
    QStringList entries;
    const auto actions = tool<QMenu>("File").actions();
    for (const QAction *action : actions)
        entries.append(action->objectName() + ": " + action->text());
    EXPECT_EQ(entries, (QStringList{"GetFile: Get File For View", "SaveFile: Save File As CSV",
                                    "SaveFiletxt: Save File as Text",
                                    "ImportToClean: Import A File To Clean",
                                    "ExportClean: Export A File After Clean"}));
}

TEST_F(Manipulator, HoldsItsControls)
{
    const std::map<QString, QString> captions{{"Command1", "Replace"},
                                              {"Command2", "Replace \",\" with NEXT LINE"},
                                              {"Command3", "Remove  lines that do not contain"},
                                              {"Command4", "Replace space with \",\""},
                                              {"Command5", "Replace \";\" with \",\""},
                                              {"Command6", "Delete All"}};
    for (const auto &[name, caption] : captions)
        EXPECT_EQ(tool<QPushButton>(name).text(), caption);
    EXPECT_EQ(tool<QLabel>("Label1").text(), "View Box");
    EXPECT_EQ(tool<QLabel>("Label1").buddy(), &tool<LongTextBox>("Text3"));
    for (const char *name : {"Text1", "Text2", "Text6"})
        EXPECT_EQ(tool<QLineEdit>(name).text(), "") << name;
    for (const char *name : {"Text3", "Text4", "Text5", "RichTextBox1"})
        EXPECT_EQ(box_text(name), "") << name;
    for (const char *work_box : {"Text4", "Text5"})
        EXPECT_FALSE(tool<QWidget>(work_box).isVisible()) << work_box;
    EXPECT_FALSE(tool<LongTextBox>("Text3").isReadOnly());
    EXPECT_TRUE(tool<LongTextBox>("RichTextBox1").isReadOnly());
    EXPECT_TRUE(tool<LongTextBox>("RichTextBox1").isVisible());
}

TEST_F(Manipulator, HasTheCharacterBoxToTheLeftOfItsCommand)
{
    const QRect box = tool<QLineEdit>("Text6").geometry();
    const QRect button = tool<QPushButton>("Command3").geometry();
    EXPECT_LT(box.right(), button.left());
    EXPECT_TRUE(box.top() <= button.center().y() && button.center().y() <= box.bottom());
}

TEST_F(Manipulator, ShowsTheImportTable)
{
    run_sql("insert into import(email) values ('a@x'), ('b@x')");
    EXPECT_EQ(table(), (QStringList{"a@x", "b@x"}));
    EXPECT_EQ(tool<QTableView>("MSFlexGrid1").columnWidth(0), twips_to_pixels(3500));
    const auto &data = tool<DataConnection>("Data1");
    EXPECT_EQ(data.database_name(), "C:\\Ostrix\\Ostrix.mdb");
    EXPECT_EQ(data.record_source().text(), "import");
}

TEST_F(Manipulator, StaysWithItsDatabaseWhenTheProgramsOneIsElsewhere)
{
    run_sql("insert into import(email) values ('a@x')");
    ASSERT_TRUE(QFile::copy(native_database(), home.file("other.mdb")));
    run_sql("insert into import(email) values ('b@x')");
    settings.write("Database", home.file("other.mdb"));
    EXPECT_EQ(table(), (QStringList{"a@x", "b@x"}));
}

TEST_F(Manipulator, OpensWithoutItsDatabase)
{
    ASSERT_TRUE(QFile::copy(native_database(), home.file("other.mdb")));
    settings.write("Database", home.file("other.mdb"));
    ASSERT_TRUE(QFile::remove(native_database()));
    window();
    boxes.expect_any_notice(NoticeIcon::Exclamation);
    EXPECT_TRUE(manipulator().isVisible());
    EXPECT_TRUE(boxes.shown().last().contains("C:\\Ostrix\\Ostrix.mdb"));
    EXPECT_EQ(table(), QStringList());
}

TEST_F(Manipulator, IsOneWindowThatComesToTheFrontAgain)
{
    set_box_text("Text3", "kept");
    manipulator().showMinimized();
    window().activateWindow();
    choose("ManipulateText");
    EXPECT_EQ(window().findChildren<QWidget *>("TextManipulator").size(), 1);
    EXPECT_FALSE(manipulator().isMinimized());
    EXPECT_TRUE(manipulator().isActiveWindow());
    EXPECT_EQ(box_text("Text3"), "kept");
}

TEST_F(Manipulator, ForgetsItsTextsWhenItIsClosed)
{
    set_box_text("Text3", "gone");
    manipulator().close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(manipulator_is_open());
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(box_text("Text3"), "");
}

TEST_F(Manipulator, DoesNotCloseWhileACommandOfItsRuns)
{
    QPointer<QWidget> before = &manipulator();
    boxes.expect_ok_cancel(delete_all, false);
    boxes.before_next_answer([&] { EXPECT_FALSE(manipulator().close()); });
    press("Command6");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(before.isNull());
    EXPECT_TRUE(before->isVisible());
    EXPECT_TRUE(before->close());
}

TEST_F(Manipulator, GoesWithTheMainWindow)
{
    run_sql("insert into import(email) values ('a@x')");
    EXPECT_EQ(table().size(), 1);
    close_window();
    EXPECT_EQ(QDir(home.file("data/Ostrix")).entryList(QDir::Files), QStringList{"Ostrix.mdb"});
}

// What a person can click must do something, and only one thing.
TEST_F(Manipulator, EveryControlThatCanBeClickedIsBoundOnce)
{
    manipulator();
    const auto &bound = window().handlers().bound();
    const auto buttons = manipulator().findChildren<QPushButton *>();
    EXPECT_EQ(buttons.size(), 6);
    for (const QPushButton *button : buttons) {
        EXPECT_TRUE(button->isEnabled());
        EXPECT_EQ(bound.count(button), 1) << button->objectName().toStdString();
    }
    const auto entries = tool<QMenu>("File").actions();
    for (const QAction *entry : entries) {
        EXPECT_TRUE(entry->isEnabled());
        EXPECT_EQ(bound.count(entry), 1) << entry->objectName().toStdString();
    }
}

TEST_F(Manipulator, IsWalkedThroughByTabInTheOrderOfItsWork)
{
    QStringList walked;
    tool<LongTextBox>("Text3").setFocus();
    for (int i = 0; i < 12; ++i) {
        QWidget *focus = manipulator().focusWidget();
        walked.append(focus->objectName());
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    EXPECT_EQ(walked, (QStringList{"Text3", "Text1", "Text2", "Command1", "Command4", "Command5",
                                   "Command2", "Text6", "Command3", "RichTextBox1", "MSFlexGrid1",
                                   "Command6"}));
}

TEST_F(Manipulator, ShowsTheHelpOnF1)
{
    boxes.expect_notice(
        "If the help file does not appear within a few seconds just search for and double click on "
        "Ostrix.hlp. It's usually in the C:\\Ostrix\\ folder");
    write_file("C:\\Ostrix\\help.bat", "");
    manipulator().activateWindow();
    QTest::keyClick(&tool<LongTextBox>("Text3"), Qt::Key_F1);
    EXPECT_TRUE(boxes.is_done());
}

TEST_F(Manipulator, FitsASmallDesktop)
{
    EXPECT_LE(manipulator().minimumSizeHint().width(), 800);
    EXPECT_LE(manipulator().minimumSizeHint().height(), 560);
}

TEST_F(Manipulator, GivesItsRoomToItsTexts)
{
    const QSize view = tool<QWidget>("Text3").size();
    const QSize saved = tool<QWidget>("RichTextBox1").size();
    const QSize grid = tool<QWidget>("MSFlexGrid1").size();
    const int commands = tool<QWidget>("Command3").width();
    manipulator().resize(manipulator().size() + QSize(300, 300));
    QApplication::processEvents();
    EXPECT_GE(tool<QWidget>("Text3").width(), view.width() + 290);
    EXPECT_GT(tool<QWidget>("Text3").height(), view.height() + 100);
    EXPECT_GT(tool<QWidget>("RichTextBox1").width(), saved.width() + 100);
    EXPECT_GT(tool<QWidget>("MSFlexGrid1").width(), grid.width() + 100);
    EXPECT_EQ(tool<QWidget>("Command3").width(), commands);
}
} // namespace
