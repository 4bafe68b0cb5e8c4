// The window "Filter", reached from the menu "Tools".
#include "db/schema.h"
#include "mail/review_window.h"
#include "platform/drive_path.h"
#include "platform/long_text_box.h"
#include "tests/support/program_window.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPointer>
#include <QProxyStyle>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <SQLiteCpp/SQLiteCpp.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ExitedWithCode;
using testing::HasSubstr;

const QString review_database = "C:\\Velmoradrane.mdb";

class ReviewForm : public ProgramWindow
{
protected:
    ReviewForm() { create_database(review_database); }

    static void run(const QString &sql)
    {
        SQLite::Database file(native_path(review_database).toStdString(), SQLite::OPEN_READWRITE,
                              5000);
        file.exec(sql.toStdString());
    }
    static void add(const QString &email, const QString &subject, const QString &text = {})
    {
        SQLite::Database file(native_path(review_database).toStdString(), SQLite::OPEN_READWRITE,
                              5000);
        SQLite::Statement insert(file, "insert into email(email, subject, text) values(?, ?, ?)");
        insert.bind(1, email.toStdString());
        insert.bind(2, subject.toStdString());
        insert.bind(3, text.toStdString());
        insert.exec();
    }
    static QStringList emails()
    {
        SQLite::Database file(native_path(review_database).toStdString(), SQLite::OPEN_READONLY);
        SQLite::Statement query(file, "select email from email order by rowid");
        QStringList found;
        while (query.executeStep())
            found.append(QString::fromStdString(query.getColumn(0).getString()));
        return found;
    }

    ReviewWindow &form()
    {
        auto *found = window().findChild<ReviewWindow *>("FilterFrm");
        if (found == nullptr) {
            choose("ReviewFilter");
            found = window().findChild<ReviewWindow *>("FilterFrm");
        }
        return *found;
    }
    template <typename Control>
    Control &part(const QString &name)
    {
        return *form().findChild<Control *>(name);
    }
    void press(const QString &button)
    {
        QTest::mouseClick(&part<QPushButton>(button), Qt::LeftButton);
    }
    QStringList apply()
    {
        press("Command1");
        return emails();
    }
    QStringList shown()
    {
        const auto &model = *part<QTableView>("MSFlexGrid1").model();
        QApplication::processEvents();
        QStringList cells;
        for (int row = 0; row < model.rowCount(); ++row)
            cells.append(model.index(row, 0).data().toString());
        return cells;
    }
    void right_click(const QPoint &place)
    {
        QWidget *cells = part<QTableView>("MSFlexGrid1").viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, cells->mapToGlobal(place));
        QApplication::sendEvent(cells, &event);
    }
    void press_in_grid(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        auto &grid = part<QTableView>("MSFlexGrid1");
        form().activateWindow(); // a box may have been answered before
        QApplication::processEvents();
        grid.setFocus();
        QTest::keyClick(&grid, key, modifiers);
    }
    QPoint place_of(int row, int column)
    {
        auto &grid = part<QTableView>("MSFlexGrid1");
        QApplication::processEvents();
        return grid.visualRect(grid.model()->index(row, column)).center();
    }
};

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

TEST_F(ReviewForm, ApplyGivesAllColumnsButTheEighthTheirWidthsAgain)
{
    run("alter table email add column eighth text");
    auto &grid = part<QTableView>("MSFlexGrid1");
    shown();
    for (int column = 0; column < 8; ++column)
        grid.setColumnWidth(column, 40);
    press("Command1");
    shown();
    const QList<int> widths = {167, 200, 233, 333, 167, 167, 167, 40};
    for (int column = 0; column < 8; ++column)
        EXPECT_EQ(grid.columnWidth(column), widths[column]) << column;
}

TEST_F(ReviewForm, ApplyDeletesEveryRowThatContainsTheAddress)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Mail RETURNED to sender", "no user gone@x.org here");
    add("gone@x.org", "Hello");
    add("was.GONE@X.ORG.uk", "Hello");
    add("kept@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"kept@x.org"});
    EXPECT_EQ(shown(), QStringList{"kept@x.org"});
    EXPECT_EQ(form().data().record_source().text(), "select * from email");
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "Returned");
    EXPECT_EQ(part<TextBox>("Text2").text(), "gone@x.org");
}

TEST_F(ReviewForm, ApplyTurnsBracketsIntoLetters)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "user [gone@x.org] unknown");
    add("gone@x.org", "Hello");
    add("xgone@x.orgx", "Hello");
    EXPECT_EQ(apply(), QStringList{"gone@x.org"});
}

TEST_F(ReviewForm, ApplyTakesAllAddressesOfAMessageAsOnePattern)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "a@x.org\r\nand b@x.org");
    add("a@x.org", "Hello");
    add("b@x.org", "Hello");
    add("a@x.org b@x.org", "Hello");
    EXPECT_EQ(apply(), (QStringList{"a@x.org", "b@x.org"}));
}

TEST_F(ReviewForm, ApplyDeletesByEachMessageInTurn)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "a@x.org");
    add("daemon@isp.org", "Returned too", "b@x.org");
    add("a@x.org", "Hello");
    add("b@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList());
    EXPECT_EQ(part<TextBox>("Text2").text(), "b@x.org");
}

TEST_F(ReviewForm, ApplyReadsAMessageThatAnEarlierOneHasDeleted)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "second@isp.org");
    add("second@isp.org", "Returned", "a@x.org");
    add("a@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList());
}

TEST_F(ReviewForm, ApplyOfAMessageWithoutAnAddressDeletesTheMessageAlone)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "nobody");
    add("ann@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"ann@x.org"});
    EXPECT_EQ(part<TextBox>("Text2").text(), "");
}

TEST_F(ReviewForm, ApplyWithoutAMatchDeletesNothing)
{
    settings.write("Filter", "Returned");
    add("ann@x.org", "Hello", "ann@x.org");
    EXPECT_EQ(apply(), QStringList{"ann@x.org"});
    EXPECT_EQ(shown(), QStringList{"ann@x.org"});
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "Returned");
}

TEST_F(ReviewForm, ApplyWithoutAHeadingExaminesEveryRowAndDeletesByZero)
{
    add("daemon@isp.org", "Anything", "gone@x.org");
    add("gone@x.org", "Hello");
    add("ten@x.org", "10 reasons");
    run("insert into email(email, text) values ('null@x.org', 'null@x.org')"); // has no subject
    EXPECT_EQ(apply(), (QStringList{"daemon@isp.org", "null@x.org"}));
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "0");
}

TEST_F(ReviewForm, ApplyWithAnEmptyHeadingStoredDoesTheSame)
{
    settings.write("Filter", "");
    add("daemon@isp.org", "Anything", "gone@x.org");
    add("gone@x.org", "Hello");
    add("ten@x.org", "10 reasons");
    EXPECT_EQ(apply(), QStringList{"daemon@isp.org"});
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "0");
}

TEST_F(ReviewForm, ApplySelectsByTheTrimmedHeadingAndDeletesByTheWholeOne)
{
    settings.write("Filter", "  Returned ");
    add("daemon@isp.org", "Returned", "gone@x.org");
    add("other@isp.org", "Was   Returned to you", "nobody");
    add("gone@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"daemon@isp.org"});
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "  Returned ");
}

TEST_F(ReviewForm, ApplyReadsTheFirstHeadingOnly)
{
    settings.write("Filter", "Nothing like it");
    settings.write("Filter1", "Returned");
    settings.write("Filter2", "Returned");
    add("daemon@isp.org", "Returned", "gone@x.org");
    EXPECT_EQ(apply(), QStringList{"daemon@isp.org"});
}

TEST_F(ReviewForm, ApplyTouchesNeitherTheListNorTheLogs)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "gone@x.org");
    add_master({"gone@x.org"});
    add_system("gone@x.org", "Returned", "gone@x.org");
    run_sql("insert into email(email) values ('gone@x.org')");
    apply();
    EXPECT_EQ(rows("master", "email"), QStringList{"gone@x.org"});
    EXPECT_EQ(rows("system", "email"), QStringList{"gone@x.org"});
    EXPECT_EQ(rows("email", "email"), QStringList{"gone@x.org"});
    EXPECT_EQ(content("c:\\Ostrix\\log.log"), "(none)");
    EXPECT_EQ(content("c:\\Ostrix\\system.log"), "(none)");
    EXPECT_EQ(text("progress_text"), "");
}

// Every error is passed over.
TEST_F(ReviewForm, ApplyWithAQuoteInTheHeadingDeletesNothing)
{
    settings.write("Filter", "can't deliver");
    add("daemon@isp.org", "can't deliver", "gone@x.org");
    add("gone@x.org", "Hello");
    EXPECT_EQ(apply(), (QStringList{"daemon@isp.org", "gone@x.org"}));
    EXPECT_EQ(shown().size(), 2);
}

TEST_F(ReviewForm, ApplyPassesOverAnAddressWithAQuote)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "o'brien@x.org");
    add("daemon@isp.org", "Returned", "gone@x.org");
    add("o'brien@x.org", "Hello");
    add("gone@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"o'brien@x.org"});
}

TEST_F(ReviewForm, ApplyGoesOnWithoutTheColumnOfTheText)
{
    settings.write("Filter", "Returned");
    run("alter table email drop column text");
    run("insert into email(email, subject) values ('daemon@isp.org', 'Returned'), ('a@x.org', "
        "'Hello')");
    EXPECT_EQ(apply(), QStringList{"a@x.org"});
}

TEST_F(ReviewForm, ApplyGoesOnWithoutTheTable)
{
    form();
    run("alter table email rename to other");
    press("Command1");
    EXPECT_TRUE(form().isVisible());
}

TEST_F(ReviewForm, ApplyWhoseDeletesAreAllRefusedComesToItsEnd)
{
    settings.write("Filter", " Returned ");
    add("daemon@isp.org", "Was Returned to you", "gone@x.org");
    add("gone@x.org", "Hello");
    form();
    SQLite::Database other(native_path(review_database).toStdString(), SQLite::OPEN_READWRITE);
    other.exec("begin immediate"); // nobody else may write now
    press("Command1");
    other.exec("rollback");
    EXPECT_EQ(emails(), (QStringList{"daemon@isp.org", "gone@x.org"}));
    EXPECT_EQ(shown().size(), 2);
    EXPECT_EQ(part<TextBox>("Text2").text(), "gone@x.org");
    EXPECT_EQ(part<QLineEdit>("Text1").text(), " Returned ");
    EXPECT_EQ(form().data().record_source().text(), "select * from email");
}

TEST_F(ReviewForm, ApplyGoesOnWithoutSettings)
{
    add("ann@x.org", "Hello");
    form();
    const QString file = settings_file(SettingsStore::application, SettingsStore::section);
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(QDir().mkpath(file)); // a folder in its place
    press("Command1");
    EXPECT_EQ(part<QLineEdit>("Text1").text(), "");
    EXPECT_EQ(form().data().record_source().text(), "select * from email");
}

TEST_F(ReviewForm, ApplyTakesAHeadingThatIsAnOpenBracketForAPatternThatFails)
{
    settings.write("Filter", "[");
    add("daemon@isp.org", "a [b", "gone@x.org");
    add("gone@x.org", "Hello");
    EXPECT_EQ(apply().size(), 2);
    EXPECT_TRUE(form().isVisible());
}

TEST_F(ReviewForm, ApplyTakesAMessageWithoutATextForOneWithoutAnAddress)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "gone@x.org");
    run("insert into email(email, subject, text) values ('null@isp.org', 'Returned', null)");
    add("gone@x.org", "Hello");
    add("kept@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"kept@x.org"});
    EXPECT_EQ(part<TextBox>("Text2").text(), "");
}

TEST_F(ReviewForm, ApplyOfMoreMessagesThanSixteenBitsCountDoesNothing)
{
    settings.write("Filter", "Returned");
    run("with recursive n(i) as (select 1 union all select i + 1 from n where i < 32768) "
        "insert into email(email, subject, text) select 'r' || i || '@x.org', 'Returned', "
        "'r1@x.org' from n");
    EXPECT_EQ(apply().size(), 32'768);
}

// Counted with sixteen bits: one more is an overflow, which is passed over as every error is, and
// leaves a count of none.
TEST_F(ReviewForm, ApplyOfAsManyMessagesAsSixteenBitsCountTakesAll)
{
    settings.write("Filter", "Returned");
    run("with recursive n(i) as (select 1 union all select i + 1 from n where i < 32767) "
        "insert into email(email, subject, text) select 'r' || i || '@x.org', 'Returned', "
        "case when i = 32767 then 'gone@x.org' else 'nobody' end from n");
    add("gone@x.org", "Hello");
    add("kept@x.org", "Hello");
    EXPECT_EQ(apply(), QStringList{"kept@x.org"});
    EXPECT_EQ(part<TextBox>("Text2").text(), "gone@x.org");
}

TEST_F(ReviewForm, ShowsAllAddressesOfALongMessage)
{
    settings.write("Filter", "Returned");
    QString text;
    for (int i = 0; i < 20'000; ++i)
        text += QString("reader%1@example.org\r\n").arg(i);
    add("daemon@isp.org", "Returned", text);
    apply();
    auto &box = part<LongTextBox>("Text2");
    EXPECT_TRUE(box.text() == text.chopped(2).replace("\r\n", " "));
    EXPECT_TRUE(box.isReadOnly());
    QTest::keyClick(&box, Qt::Key_End, Qt::ControlModifier);
    QApplication::processEvents();
    EXPECT_TRUE(box.toPlainText().endsWith(" reader19999@example.org"));
}

// A step that fails leaves its box as it was.
TEST_F(ReviewForm, ApplyWithoutTheColumnOfTheTextGoesOnWithTheAddressesShown)
{
    settings.write("Filter", "Returned");
    add("daemon@isp.org", "Returned", "gone@x.org");
    EXPECT_EQ(apply(), QStringList());
    run("alter table email drop column text");
    run("insert into email(email, subject) values ('daemon@isp.org', 'Returned'), ('gone@x.org', "
        "'Hello'), ('a@x.org', 'Hello')");
    EXPECT_EQ(apply(), QStringList{"a@x.org"});
    EXPECT_EQ(part<TextBox>("Text2").text(), "gone@x.org");
}

TEST_F(ReviewForm, ApplyShowsTheTrimmedHeadingWhileItWalksAndTheWholeOneAfterwards)
{
    settings.write("Filter", "  Returned ");
    add("daemon@isp.org", "Returned", "gone@x.org");
    QStringList seen;
    QObject::connect(&part<QLineEdit>("Text1"), &QLineEdit::textChanged, &form(),
                     [&seen](const QString &text) { seen.append(text); });
    apply();
    EXPECT_EQ(seen, (QStringList{"  Returned ", "Returned", "  Returned "}));
}

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
