#include "tests/support/program_window.h"

#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace
{
const QString delete_all_question = "Are you sure you want to delete ALL records?";
const QString how_to_delete =
    "To delete a record, click on the record you wish to delete and then press this button";

class ListTab : public ProgramWindow
{
protected:
    QStringList first_column(const QString &name)
    {
        QStringList cells;
        const QStringList shown_rows = grid(name);
        for (const QString &row : shown_rows)
            cells.append(row.section('|', 0, 0));
        return cells;
    }

    /// A click on a grid's row.
    void select_row(const QString &name, int row) { select_cell(name, row, 0); }

    void select_cell(const QString &name, int row, int column)
    {
        auto &view = control<QTableView>(name);
        QApplication::processEvents();
        const QPoint place = view.visualRect(view.model()->index(row, column)).center();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
    }

    void choose_item(const QString &combo, const QString &item)
    {
        control<QComboBox>(combo).setCurrentText(item);
    }

    /// Actions in a window, not opened before, that end the program with this run-time error.
    void expect_end(const std::function<void()> &actions, int number, const QString &words)
    {
        const auto end = [&] {
            boxes.expect_any_notice();
            actions();
        };
        EXPECT_EXIT(end(), testing::ExitedWithCode(1),
                    testing::AllOf(testing::HasSubstr(
                                       QString("Run-time error '%1':").arg(number).toStdString()),
                                   testing::HasSubstr(words.toStdString())));
    }
};

class MasterTab : public ListTab
{
protected:
    QStringList shown() { return first_column("MSFlexGrid5"); }
};

TEST_F(MasterTab, RefreshShowsTheWholeListAgain)
{
    window();
    add_master({"ann@example.org", "bob@example.org"});
    EXPECT_EQ(shown(), QStringList()); // as it was at the last refresh
    click("Command20");
    EXPECT_EQ(shown(), (QStringList{"ann@example.org", "bob@example.org"}));
    EXPECT_EQ(window().master_list().record_source().text(), "select * from master");
}

TEST_F(MasterTab, AddToMasterCopiesTheWorkTableWithItsDuplicates)
{
    add_system("ann@example.org", {});
    add_system("ann@example.org", {});
    click("Command44");
    click("Command44");
    EXPECT_EQ(rows("master", "email"), QStringList(4, "ann@example.org"));
    EXPECT_EQ(shown().size(), 4);
}

TEST_F(MasterTab, AddStoresTheTypedAddressAsItIs)
{
    type("Text1", "  no sign at all ");
    click("cmdADD");
    EXPECT_EQ(rows("master", "email"), QStringList{"  no sign at all "});
    EXPECT_EQ(text("Text1"), "");
    EXPECT_EQ(window().focusWidget(), &control<QPushButton>("cmdADD"));
    EXPECT_EQ(shown().size(), 1);
}

TEST_F(MasterTab, AddAsksForAnAddress)
{
    boxes.expect_notice("Please enter an eMail address in the textbox");
    click("cmdADD");
    EXPECT_EQ(rows("master", "email"), QStringList());
    EXPECT_EQ(window().focusWidget(), &control<QPushButton>("cmdADD"));
}

TEST_F(MasterTab, AddEndsQuietlyWhenItFails)
{
    window().master_list().set_record_source("select distinct email from master");
    window().master_list().refresh(); // a set that cannot be updated
    type("Text1", "ann@example.org");
    click("cmdADD");
    EXPECT_EQ(rows("master", "email"), QStringList());
}

TEST_F(MasterTab, ChangeRewritesEveryMatchWithABlankOnEitherSide)
{
    add_master({"ann@old.example", "bob@OLD.example", "carl@new.example"});
    type("Text2", "old.example");
    type("Text7", "x@new.example");
    click("Command21");
    EXPECT_EQ(rows("master", "email"),
              (QStringList{" x@new.example ", " x@new.example ", "carl@new.example"}));
    EXPECT_EQ(shown().size(), 3);
}

TEST_F(MasterTab, ChangeWithoutAPartToLookForRewritesEverything)
{
    add_master({"ann@example.org", "bob@example.org"});
    type("Text7", "x");
    click("Command21");
    EXPECT_EQ(rows("master", "email"), (QStringList{" x ", " x "}));
}

TEST_F(MasterTab, ChangeWithAQuoteEndsTheProgramAndChangesNothing)
{
    add_master({"ann@example.org"});
    const auto change = [this] {
        type("Text2", "ann");
        type("Text7", "o'brien@example.org");
        click("Command21");
    };
    expect_end(change, 3075, "o'brien@example.org");
    EXPECT_EQ(rows("master", "email"), QStringList{"ann@example.org"});
}

TEST_F(MasterTab, DeleteARecordDeletesTheRowClickedOn)
{
    add_master({"ann@example.org", "bob@example.org", "carl@example.org"});
    add_system("x@example.org", {});
    click("Command20");
    click("Command28");
    select_row("MSFlexGrid5", 1);
    boxes.expect_notice(how_to_delete, NoticeIcon::Information);
    boxes.expect_ok_cancel("Are you sure you want to delete this record?", true);
    click("Command43");
    EXPECT_EQ(rows("master", "email"), (QStringList{"ann@example.org", "carl@example.org"}));
    EXPECT_EQ(shown().size(), 2);
}

TEST_F(MasterTab, DeleteARecordAfterASortDeletesTheRowShown)
{
    add_master({"carl@example.org", "ann@example.org", "bob@example.org"});
    add_system("x@example.org", {});
    click("Command20");
    click("Command28");
    boxes.expect_ok_cancel(
        "This will sort data in ascending order. Click CANCEL to sort in descending order?", true);
    click("Command33");
    select_row("MSFlexGrid5", 0);
    boxes.expect_notice(how_to_delete, NoticeIcon::Information);
    boxes.expect_ok_cancel("Are you sure you want to delete this record?", true);
    click("Command43");
    EXPECT_EQ(rows("master", "email"), (QStringList{"carl@example.org", "bob@example.org"}));
}

TEST_F(MasterTab, DeleteARecordCancelledDeletesNothing)
{
    add_master({"ann@example.org"});
    add_system("x@example.org", {});
    click("Command20");
    click("Command28");
    boxes.expect_notice(how_to_delete, NoticeIcon::Information);
    boxes.expect_ok_cancel("Are you sure you want to delete this record?", false);
    click("Command43");
    EXPECT_EQ(rows("master", "email").size(), 1);
}

TEST_F(MasterTab, DeleteARecordLooksAtTheWorkTable)
{
    add_master({"ann@example.org"});
    click("Command20");
    boxes.expect_notice(how_to_delete, NoticeIcon::Information);
    boxes.expect_notice("The database has no records to delete");
    click("Command43");
    EXPECT_EQ(rows("master", "email").size(), 1);
}

TEST_F(MasterTab, DeleteARecordOfAnEmptyListEndsQuietly)
{
    add_system("x@example.org", {});
    click("Command28");
    boxes.expect_notice(how_to_delete, NoticeIcon::Information);
    click("Command43");
}

TEST_F(MasterTab, DeleteAllRecordsAsksFirst)
{
    add_master({"ann@example.org"});
    add_system("x@example.org", {});
    click("Command20");
    boxes.expect_ok_cancel(delete_all_question, false);
    click("Command42");
    EXPECT_EQ(rows("master", "email").size(), 1);
    boxes.expect_ok_cancel(delete_all_question, true);
    click("Command42");
    EXPECT_EQ(rows("master", "email"), QStringList());
    EXPECT_EQ(shown(), QStringList());
    EXPECT_EQ(rows("system", "email").size(), 1);
}

TEST_F(MasterTab, SortIsAscendingOnOkAndDescendingOnCancel)
{
    const QString question =
        "This will sort data in ascending order. Click CANCEL to sort in descending order?";
    add_master({"bob@example.org", "Ann@example.org", "carl@example.org"});
    click("Command20");
    boxes.expect_ok_cancel(question, true);
    click("Command33");
    EXPECT_EQ(shown(), (QStringList{"Ann@example.org", "bob@example.org", "carl@example.org"}));
    boxes.expect_ok_cancel(question, false);
    click("Command33");
    EXPECT_EQ(shown(), (QStringList{"carl@example.org", "bob@example.org", "Ann@example.org"}));
    EXPECT_EQ(rows("master", "email").first(), "bob@example.org"); // the database is not touched
}

TEST_F(MasterTab, SortIsByTheSelectedColumnAlsoTheNextTime)
{
    const QString question =
        "This will sort data in ascending order. Click CANCEL to sort in descending order?";
    run_sql(
        "insert into master(email, name) values ('a@x', 'Zoe'), ('b@x', 'Ann'), ('c@x', 'Max')");
    click("Command20");
    select_cell("MSFlexGrid5", 1, 1);
    boxes.expect_ok_cancel(question, true);
    click("Command33");
    EXPECT_EQ(shown(), (QStringList{"b@x", "c@x", "a@x"}));
    boxes.expect_ok_cancel(question, false);
    click("Command33");
    EXPECT_EQ(shown(), (QStringList{"a@x", "c@x", "b@x"}));
}

TEST_F(MasterTab, SortWithoutADatabaseDoesNothing)
{
    settings.write("Database", "C:\\Ostrix\\none.mdb");
    boxes.expect_any_notice(NoticeIcon::Exclamation);
    boxes.expect_any_notice(NoticeIcon::Exclamation);
    window();
    boxes.expect_ok_cancel(
        "This will sort data in ascending order. Click CANCEL to sort in descending order?", true);
    click("Command33");
}

TEST_F(MasterTab, DeleteARecordSparesAnotherRecordThatTookItsPlace)
{
    add_master({"ann@example.org", "bob@example.org"});
    add_system("x@example.org", {});
    click("Command20");
    click("Command28");
    select_row("MSFlexGrid5", 1);
    boxes.expect_notice(how_to_delete, NoticeIcon::Information);
    boxes.expect_ok_cancel("Are you sure you want to delete this record?", true);
    boxes.before_next_answer(
        [this] { boxes.before_next_answer([this] { window().master_list().refresh(); }); });
    click("Command43");
    EXPECT_EQ(rows("master", "email").size(), 2);
}

TEST_F(MasterTab, CountShowsRowsNotDistinctAddresses)
{
    add_master({"ann@example.org", "ann@example.org"});
    click("Command20");
    boxes.expect_notice("Number of unique records is:   2");
    click("Command36");
}

TEST_F(MasterTab, CountOfAnEmptyList)
{
    boxes.expect_notice("Number of unique records is:   0");
    click("Command36");
}

TEST_F(MasterTab, CountIsOfTheSetFromTheLastRefresh)
{
    add_master({"ann@example.org"});
    click("Command20");
    add_master({"bob@example.org"});
    boxes.expect_notice("Number of unique records is:   1");
    click("Command36");
    EXPECT_EQ(window().master_list().record_source().text(), "select * from master");
}

class WorkTableTab : public ListTab
{
protected:
    QStringList shown() { return first_column("MSFlexGrid1"); }
};

TEST_F(WorkTableTab, RefreshShowsTheWholeTableAgain)
{
    add_system("ann@example.org", {});
    click("Command28");
    EXPECT_EQ(shown(), QStringList{"ann@example.org"});
    EXPECT_EQ(window().work_table().record_source().text(), " select * from system");
}

TEST_F(WorkTableTab, DeleteAllAsksFirst)
{
    add_system("ann@example.org", {});
    add_master({"ann@example.org"});
    click("Command28");
    boxes.expect_ok_cancel(delete_all_question, false);
    click("Command45");
    EXPECT_EQ(rows("system", "email").size(), 1);
    boxes.expect_ok_cancel(delete_all_question, true);
    click("Command45");
    EXPECT_EQ(rows("system", "email"), QStringList());
    EXPECT_EQ(shown(), QStringList());
    EXPECT_EQ(rows("master", "email").size(), 1);
}

TEST_F(WorkTableTab, SearchesTheChosenColumn)
{
    add_system("ann@example.org", "Hello");
    add_system("bob@example.org", "Ann's news");
    choose_item("Combo1", "eMail");
    type("Text26", "ANN");
    click("Command25");
    EXPECT_EQ(shown(), QStringList{"ann@example.org"});
    choose_item("Combo1", "Subject");
    click("Command25");
    EXPECT_EQ(shown(), QStringList{"bob@example.org"});
    EXPECT_EQ(window().work_table().record_source().text(),
              "select * from system where subject like '*ANN*' ");
}

TEST_F(WorkTableTab, SearchForNothingShowsEverything)
{
    add_system("ann@example.org", "Hello");
    choose_item("Combo1", "eMail");
    click("Command25");
    EXPECT_EQ(shown().size(), 1);
}

TEST_F(WorkTableTab, SearchAsksForAColumn)
{
    boxes.expect_notice("Please use the drop down list to select a search criteria");
    click("Command25");
    EXPECT_EQ(window().work_table().record_source().text(), "system");
}

TEST_F(WorkTableTab, SearchForAQuoteEndsTheProgram)
{
    const auto search = [this] {
        choose_item("Combo1", "eMail");
        type("Text26", "o'brien");
        click("Command25");
    };
    expect_end(search, 3075, "select * from system where email like '*o'brien*' ");
}

class AddressListOfTheSendTab : public ListTab
{
protected:
    QStringList list()
    {
        const auto &widget = control<QListWidget>("List1");
        QStringList items;
        for (int i = 0; i < widget.count(); ++i)
            items.append(widget.item(i)->text());
        return items;
    }
};

TEST_F(AddressListOfTheSendTab, ShowsEachNonEmptyAddressOnce)
{
    add_master({"bob@example.org", "ann@example.org", "", "BOB@example.org"});
    click("Command26");
    EXPECT_EQ(list(), (QStringList{"bob@example.org", "ann@example.org"}));
    EXPECT_EQ(window().master_list().record_source().text(), " select * from master");
    EXPECT_EQ(control<QProgressBar>("ProgressBar3").value(), 0);
    QApplication::processEvents(); // clicks that came during the walk are passed over first
    click("Command26");
    EXPECT_EQ(list().size(), 2);
}

TEST_F(AddressListOfTheSendTab, HoldsAHundredThousandAddresses)
{
    run_sql("with recursive n(i) as (select 1 union all select i + 1 from n where i < 100000) "
            "insert into master(email) select 'reader' || i || '@example.org' from n");
    click("Command26");
    EXPECT_EQ(list().size(), 100'000);
    EXPECT_EQ(list().last(), "reader100000@example.org");
}
} // namespace
