#include "platform/long_text_box.h"
#include "platform/qt_prompts.h"
#include "platform/runtime_error.h"
#include "tests/support/box_robot.h"
#include "tests/support/private_home.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{
TEST(QtPrompts, ShowsMarkupAsText)
{
    BoxRobot robot;
    QtPrompts prompts;
    robot.expect_notice("<b>not bold</b>", NoticeIcon::Information);
    prompts.notice("<b>not bold</b>", NoticeIcon::Information);
}

TEST(QtPrompts, ARunTimeErrorIsACriticalBoxWithOK)
{
    BoxRobot robot;
    QtPrompts prompts;
    robot.expect_run_time_error("Run-time error '6':\n\nOverflow");
    prompts.run_time_error(RuntimeError(6, "Overflow").report());
}

// Shows a long report. @return what the box's details hold.
QString details_of(const QString &report, const QString &shown)
{
    BoxRobot robot;
    QtPrompts prompts;
    QString details;
    robot.before_next_answer([&] {
        const auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        EXPECT_LT(box->height(), 700);
        EXPECT_LT(box->width(), 1200);
        const auto buttons = box->buttons();
        const auto show = std::find_if(buttons.begin(), buttons.end(), [box](auto *button) {
            return box->buttonRole(button) == QMessageBox::ActionRole;
        });
        ASSERT_NE(show, buttons.end());
        EXPECT_EQ((*show)->text(), "Show Details...");
        QTest::mouseClick(*show, Qt::LeftButton);
        QApplication::processEvents();
        auto *shown_details = box->findChild<LongTextBox *>();
        EXPECT_TRUE(shown_details->isVisible());
        EXPECT_TRUE(shown_details->isReadOnly());
        EXPECT_TRUE(report.startsWith(shown_details->toPlainText().left(100)));
        EXPECT_LT(shown_details->document()->characterCount(), 300'000);
        QTest::keyClick(shown_details, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(shown_details, Qt::Key_C, Qt::ControlModifier);
        details = QApplication::clipboard()->text();
        EXPECT_LT(box->height(), 900);
    });
    robot.expect_run_time_error(shown);
    prompts.run_time_error(report);
    return details;
}

TEST(QtPrompts, ARunTimeErrorThatFillsMoreThanAScreenShowsItsBeginning)
{
    const QString rest =
        " …\n\nThis is only the beginning. Press \"Show Details...\" for all of it.";
    const QString lines = QString("ann@example.org: no\n").repeated(2'000);
    EXPECT_EQ(details_of(lines, QString("ann@example.org: no\n").repeated(20).chopped(1) + rest),
              lines);
    const QString words = QString("ann@example.org, ").repeated(2'000);
    EXPECT_EQ(details_of(words, words.left(1'000) + rest), words);
    // A message's text may be as long as this and need not hold a blank.
    const QString no_blank(1'000'000, 'x');
    EXPECT_TRUE(details_of(no_blank, no_blank.left(1'000) + rest) == no_blank);
}

TEST(QtPrompts, TheCurrentFolderIsWhereAFileWasLastChosen)
{
    const PrivateHome home;
    BoxRobot robot;
    QtPrompts prompts;
    EXPECT_EQ(prompts.current_folder(), "c:\\Ostrix\\");
    robot.expect_save_file({});
    prompts.save_file({});
    EXPECT_EQ(prompts.current_folder(), "c:\\Ostrix\\"); // cancelled
    robot.expect_save_file(home.file("list.txt"));
    prompts.save_file({});
    EXPECT_EQ(prompts.current_folder(), home.file("list.txt").chopped(9));
}

TEST(QtPrompts, SoDoesEveryOtherBox)
{
    BoxRobot robot;
    QtPrompts prompts;
    const QString lines = QString("x\n").repeated(100);
    robot.expect_ok_cancel(
        QString("x\n").repeated(20).chopped(1) +
            " …\n\nThis is only the beginning. Press \"Show Details...\" for all of it.",
        true);
    EXPECT_TRUE(prompts.ok_cancel(lines));
}

TEST(QtPrompts, NoBoxOpensOverAWindowThatComesAndGoes)
{
    BoxRobot robot;
    QWidget main_window;
    QWidget passing(&main_window, Qt::Dialog | Qt::WindowDoesNotAcceptFocus);
    QtPrompts prompts;
    prompts.set_parent(&main_window);
    main_window.show();
    passing.show();
    passing.activateWindow();
    robot.before_next_answer(
        [&] { EXPECT_EQ(QApplication::activeModalWidget()->parentWidget(), &main_window); });
    robot.expect_notice("still here");
    prompts.notice("still here", NoticeIcon::None);
}

TEST(QtPrompts, HandsOverTheAnswer)
{
    BoxRobot robot;
    QtPrompts prompts;
    robot.expect_yes_no("one", true);
    robot.expect_yes_no("two", false);
    robot.expect_ok_cancel("three", true);
    robot.expect_ok_cancel("four", false);
    EXPECT_TRUE(prompts.yes_no("one"));
    EXPECT_FALSE(prompts.yes_no("two"));
    EXPECT_TRUE(prompts.ok_cancel("three"));
    EXPECT_FALSE(prompts.ok_cancel("four"));
}

TEST(QtPrompts, FileDialogsKeepTheLabelAndHandOverTheFullPath)
{
    const PrivateHome home;
    QFile file(home.file("list.txt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    BoxRobot robot;
    QtPrompts prompts;
    robot.expect_open_file(home.file("list.txt"), "Text files (*.TXT)");
    EXPECT_EQ(prompts.open_file({"Text files (*.TXT)|*.TXT", home.path()}), home.file("list.txt"));
    robot.expect_open_file("", "All files (*.*)");
    EXPECT_EQ(prompts.open_file({"All files (*.*)|*.*", {}}), "");
    robot.expect_save_file(home.file("new"));
    EXPECT_EQ(prompts.save_file({{}, home.path()}), home.file("new"));
}

TEST(DialogFilterText, IsALabelAndAPatternThatTakesEveryFileForStarDotStar)
{
    struct Case
    {
        const char *text, *label, *pattern;
    };
    const Case cases[] = {{"Text files (*.TXT)|*.TXT", "Text files (*.TXT)", "*.TXT"},
                          {"All files (*.*)|*.*", "All files (*.*)", "*"},
                          {"All files (*.csv)|*.csv", "All files (*.csv)", "*.csv"},
                          {"no bar", "", ""},
                          {"", "", ""}};
    for (const Case &filter : cases) {
        EXPECT_EQ(dialog_filter(filter.text).label, filter.label) << filter.text;
        EXPECT_EQ(dialog_filter(filter.text).pattern, filter.pattern) << filter.text;
    }
}

TEST(QtPrompts, StarDotStarShowsFilesWithoutADotToo)
{
    const PrivateHome home;
    QFile file(home.file("readme"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    BoxRobot robot;
    QtPrompts prompts;
    QStringList filters;
    robot.before_next_answer([&filters] {
        filters = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())->nameFilters();
    });
    robot.expect_open_file(home.file("readme"), "All files (*.*)");
    EXPECT_EQ(prompts.open_file({"All files (*.*)|*.*", home.path()}), home.file("readme"));
    EXPECT_EQ(filters, QStringList{"All files (*.*) (*)"});
}

TEST(QtPrompts, InputIsEmptyWhenCancelled)
{
    BoxRobot robot;
    QtPrompts prompts;
    robot.expect_input("Name?", "friends");
    robot.expect_input("Name?", {});
    EXPECT_EQ(prompts.input("Name?"), "friends");
    EXPECT_EQ(prompts.input("Name?"), "");
}
} // namespace
