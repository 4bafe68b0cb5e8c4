// The searches of the master list and the selection of a row.
#include "tests/support/program_window.h"

#include <QApplication>
#include <QListWidget>
#include <QTableView>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
const QString email_question = "Do you want to email to this list?";
const QString add_question = "Do you want to add to the list? Press cancel if you want to email to "
                             "just this list?";

class AddressSearch : public ProgramWindow
{
protected:
    AddressSearch()
    {
        for (const auto &[email, name] : QList<QPair<QString, QString>>{
                 {"ann@one.org", "Ann"}, {"bob@two.org", "Bob One"}, {"cid@ONE.org", "Cid"}})
            run_sql("insert into master(email, name) values (?, ?)", {email, name});
    }

    QStringList entries()
    {
        const auto &list = control<QListWidget>("List1");
        QStringList texts;
        for (int i = 0; i < list.count(); ++i)
            texts.append(list.item(i)->text());
        return texts;
    }

    void select_row(int row)
    {
        auto &view = control<QTableView>("MSFlexGrid5");
        QApplication::processEvents();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                          view.visualRect(view.model()->index(row, 0)).center());
    }
};

TEST_F(AddressSearch, CancelAtTheFirstQuestionOnlyShowsWhatWasFound)
{
    type("Text23", "one");
    boxes.expect_ok_cancel(email_question, false);
    control<QListWidget>("List1").addItem("old@x.org");
    click("Command19");
    EXPECT_EQ(window().master_list().record_source().text(),
              "select * from master where email like '*one*' ");
    EXPECT_EQ(grid("MSFlexGrid5"), (QStringList{"ann@one.org|Ann", "cid@ONE.org|Cid"}));
    EXPECT_EQ(entries(), QStringList{"old@x.org"});
}

TEST_F(AddressSearch, OkAndOkAddsToTheList)
{
    control<QListWidget>("List1").addItem("old@x.org");
    type("Text23", "one");
    boxes.expect_ok_cancel(email_question, true);
    boxes.expect_ok_cancel(add_question, true);
    click("Command19");
    EXPECT_EQ(entries(), (QStringList{"old@x.org", "ann@one.org", "cid@ONE.org"}));
}

TEST_F(AddressSearch, OkAndCancelMakesANewList)
{
    control<QListWidget>("List1").addItem("old@x.org");
    type("Text23", "two");
    boxes.expect_ok_cancel(email_question, true);
    boxes.expect_ok_cancel(add_question, false);
    click("Command19");
    EXPECT_EQ(entries(), QStringList{"bob@two.org"});
}

TEST_F(AddressSearch, SearchNameLooksAtNames)
{
    type("Text16", "one");
    boxes.expect_ok_cancel(email_question, true);
    boxes.expect_ok_cancel(add_question, true);
    click("Command37");
    EXPECT_EQ(window().master_list().record_source().text(),
              "select * from master where name like '*one*' ");
    EXPECT_EQ(entries(), QStringList{"bob@two.org"});
}

TEST_F(AddressSearch, AScheduledRunWhileAQuestionStandsDoesNotWidenTheList)
{
    write_file("c:\\Ostrix\\system.log", "nobody@nowhere.example\r\n");
    type("Text23", "two");
    boxes.expect_ok_cancel(email_question, true);
    boxes.before_next_answer([this] { click("runSchedule"); });
    boxes.expect_ok_cancel(add_question, true);
    click("Command19");
    EXPECT_EQ(entries(), QStringList{"bob@two.org"});
    EXPECT_EQ(grid("MSFlexGrid5"), QStringList{"bob@two.org|Bob One"});
}

TEST_F(AddressSearch, NothingFoundAsksNothing)
{
    type("Text23", "nobody");
    click("Command19");
    EXPECT_EQ(grid("MSFlexGrid5"), QStringList());
    EXPECT_EQ(boxes.shown(), QStringList());
}

TEST_F(AddressSearch, AnEmptyTextFindsAll)
{
    boxes.expect_ok_cancel(email_question, false);
    click("Command37");
    EXPECT_EQ(grid("MSFlexGrid5").size(), 3);
}

TEST_F(AddressSearch, AQuoteEndsTheProgram)
{
    const auto search = [this] {
        boxes.expect_any_notice();
        set_text("Text23", "o'b");
        click("Command19");
    };
    EXPECT_EXIT(search(), testing::ExitedWithCode(1), testing::HasSubstr("Run-time error '3075'"));
}

TEST_F(AddressSearch, ASelectedRowBecomesTheCurrentRecordAndFillsTheBoxes)
{
    window();
    select_row(1);
    EXPECT_EQ(window().master_list().record_set().absolute_position(), 1);
    EXPECT_EQ(text("Text7"), "bob@two.org");
    EXPECT_EQ(text("Text2"), "Bob One");
    QTest::keyClick(&control<QTableView>("MSFlexGrid5"), Qt::Key_Down);
    EXPECT_EQ(text("Text7"), "cid@ONE.org");
    EXPECT_EQ(text("Text2"), "Cid");
}

TEST_F(AddressSearch, ARowOfOneCellEmptiesTheOtherBox)
{
    window().master_list().set_record_source("select distinct email from master");
    window().master_list().refresh();
    set_text("Text2", "old");
    select_row(0);
    EXPECT_EQ(text("Text7"), "ann@one.org");
    EXPECT_EQ(text("Text2"), "");
}

TEST_F(AddressSearch, ARowThatACommandSelectsLeavesTheBoxesAlone)
{
    type("Text7", "typed");
    boxes.expect_ok_cancel(
        "This will sort data in ascending order. Click CANCEL to sort in descending order?", false);
    click("Command33");
    EXPECT_EQ(text("Text7"), "typed");
    select_row(0); // the row that is current already
    EXPECT_EQ(text("Text7"), "cid@ONE.org");
}

TEST_F(AddressSearch, TheTabKeyIntoTheGridLeavesTheBoxesAlone)
{
    type("Text7", "typed");
    auto &view = control<QTableView>("MSFlexGrid5");
    view.setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_EQ(text("Text7"), "typed");
}
} // namespace
