// The window "Filter", reached from the menu "Tools".
#include "tests/mail/review_room.h"

#include <QPointer>
#include <QProxyStyle>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ExitedWithCode;
using testing::HasSubstr;

TEST_F(ReviewForm, HoldsItsControls)
{
    EXPECT_EQ(form().windowTitle(), "Filter");
    EXPECT_TRUE(form().isVisible());
    EXPECT_FALSE(form().isModal());
    EXPECT_EQ(part<QPushButton>("Command1").text(), "Apply");
    EXPECT_EQ(part<QPushButton>("cmdLarge2").text(), "View Large Screen");
    EXPECT_EQ(part<TextBox>("RichTextBox1").text(), "System Work Table");
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "");
    EXPECT_EQ(part<TextBox>("Text2").text(), "");
    EXPECT_NE(form().findChild<DataConnection *>("Data1"), nullptr);
}

TEST_F(ReviewForm, ShowsTheTableOfItsOwnFile)
{
    add("ann@x.org", "Hello");
    run_sql("insert into email(email) values ('in@main.org')");
    EXPECT_EQ(shown(), QStringList{"ann@x.org"});
    EXPECT_EQ(form().data().database_name(), review_database);
    EXPECT_EQ(form().data().record_source().text(), "email");
}

TEST_F(ReviewForm, GivesTheColumnsTheirWidths)
{
    run("alter table email add column eighth text");
    form();
    shown();
    const QList<int> widths = {167, 200, 233, 333, 167, 167, 167, 167};
    for (int column = 0; column < 8; ++column)
        EXPECT_EQ(part<QTableView>("MSFlexGrid1").columnWidth(column), widths[column]) << column;
}

// Every error is passed over.
// Counted with sixteen bits: one more is an overflow, which is passed over as every error is, and
// leaves a count of none.
// A step that fails leaves its box as it was.
TEST_F(ReviewForm, ADoubleClickShowsTheCell)
{
    add("ann@x.org", "A [bracketed] subject");
    form();
    const QPoint place = place_of(0, 1);
    auto *cells = part<QTableView>("MSFlexGrid1").viewport();
    QTest::mouseClick(cells, Qt::LeftButton, {}, place);
    EXPECT_EQ(boxes.shown(), QStringList());
    boxes.expect_notice("A [bracketed] subject");
    QTest::mouseDClick(cells, Qt::LeftButton, {}, place);
    boxes.expect_notice("A [bracketed] subject");
    press_in_grid(Qt::Key_Return);
}

TEST_F(ReviewForm, TheKeypadsEnterKeyShowsTheCellToo)
{
    add("ann@x.org", "Hello");
    auto &grid = part<QTableView>("MSFlexGrid1");
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, place_of(0, 1));
    boxes.expect_notice("Hello");
    press_in_grid(Qt::Key_Enter, Qt::KeypadModifier);
}

/// A desktop on which one click opens.
class SingleClickStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_ItemView_ActivateItemOnSingleClick
                   ? 1
                   : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

TEST_F(ReviewForm, WhereOneClickOpensACellWantsTwoAllTheSame)
{
    add("ann@x.org", "Hello");
    auto &grid = part<QTableView>("MSFlexGrid1");
    SingleClickStyle style;
    grid.setStyle(&style);
    const QPoint place = place_of(0, 1);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(boxes.shown(), QStringList());
    boxes.expect_notice("Hello");
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(boxes.shown().size(), 1);
    close_window();
}

TEST_F(ReviewForm, ARightClickShowsTheCellTwice)
{
    add("ann@x.org", "[[a] and [b]]");
    form();
    boxes.expect_notice("xxa] and xb]]");
    boxes.expect_notice("[[ax and [bxx");
    right_click(place_of(0, 1));
}

TEST_F(ReviewForm, ARightClickIsOnTheCellUnderTheMouse)
{
    add("ann@x.org", "[first]");
    add("bob@x.org", "[second]");
    auto &grid = part<QTableView>("MSFlexGrid1");
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, place_of(0, 1));
    boxes.expect_notice("xsecond]");
    boxes.expect_notice("[secondx");
    // Without the press that goes before: some desktops open menus when the button is let go.
    right_click(place_of(1, 1));
    EXPECT_EQ(grid.currentIndex(), grid.model()->index(1, 1));
}

TEST_F(ReviewForm, TheMenuKeyIsForTheCurrentCell)
{
    add("ann@x.org", "[first]");
    add("bob@x.org", "[second]");
    auto &grid = part<QTableView>("MSFlexGrid1");
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, place_of(1, 1));
    boxes.expect_notice("xsecond]");
    boxes.expect_notice("[secondx");
    const QPoint place = grid.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, grid.mapToGlobal(place));
    QApplication::sendEvent(&grid, &event);
}

TEST_F(ReviewForm, AClickBesideTheCellsShowsNothing)
{
    add("ann@x.org", "Hello");
    auto &grid = part<QTableView>("MSFlexGrid1");
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, place_of(0, 1));
    const QPoint beside = place_of(0, 1) + QPoint(0, 100);
    right_click(beside);
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, beside);
    EXPECT_EQ(boxes.shown(), QStringList());
}

TEST_F(ReviewForm, ACellIsShownWholeAlsoWhenTheGridCutsIt)
{
    const QString body = QString("word ").repeated(100);
    add("ann@x.org", "Hello", body);
    form();
    boxes.expect_notice(body);
    auto &grid = part<QTableView>("MSFlexGrid1");
    QApplication::processEvents();
    grid.setCurrentIndex(grid.model()->index(0, 4));
    press_in_grid(Qt::Key_Return);
}

TEST_F(ReviewForm, AnEmptyGridShowsNothing)
{
    form();
    right_click({20, 20});
    press_in_grid(Qt::Key_Return);
    EXPECT_EQ(boxes.shown(), QStringList());
}

TEST_F(ReviewForm, ViewLargeScreenHasNothingToShow)
{
    const auto press_it = [this] {
        boxes.expect_any_notice();
        press("cmdLarge2");
    };
    EXPECT_EXIT(press_it(), ExitedWithCode(1),
                HasSubstr("Run-time error '424':\n\nObject required"));
}

TEST_F(ReviewForm, WithoutItsDatabaseOpensEmpty)
{
    ASSERT_TRUE(QFile::remove(native_path(review_database)));
    boxes.expect_notice("Could not find file 'C:\\Velmoradrane.mdb'.", NoticeIcon::Exclamation);
    form();
    EXPECT_TRUE(form().isVisible());
    press("Command1"); // every error is passed over
    EXPECT_EQ(content(review_database), "(none)");
}

TEST_F(ReviewForm, IsOneWindowThatIsGoneWhenClosed)
{
    const QPointer<ReviewWindow> first = &form();
    choose("ReviewFilter");
    EXPECT_EQ(window().findChildren<ReviewWindow *>().size(), 1);
    first->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(first, nullptr);
    choose("ReviewFilter");
    EXPECT_TRUE(form().isVisible());
    close_window(); // with the review window open
    EXPECT_EQ(content("C:\\Velmoradrane.mdb-wal"), "(none)");
}
} // namespace
