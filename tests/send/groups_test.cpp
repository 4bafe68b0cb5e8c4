// The tab "Create Group".
#include "tests/send/group_room.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProgressBar>
#include <gmock/gmock.h>

namespace
{
TEST_F(Groups, TheBoundBoxesShowTheCurrentAddresses)
{
    add_master({"ann@x.org", "bob@x.org"});
    add_system("cid@x.org", "Hello");
    window();
    QApplication::processEvents();
    EXPECT_EQ(text("Text30"), "ann@x.org");
    EXPECT_EQ(text("Text8"), "cid@x.org");
    window().master_list().record_set().move_next();
    QApplication::processEvents();
    EXPECT_EQ(text("Text30"), "bob@x.org");
    window().master_list().record_set().move_next();
    QApplication::processEvents();
    EXPECT_EQ(text("Text30"), "");
}

// The list takes the master list's current address for each record of the search, not the record's
// own.
TEST_F(Groups, MakeGroupRepeatsTheMasterListsCurrentAddress)
{
    add_master({"ann@x.org", "bob@x.org"});
    add_email("one@y.org", "subject", "wanted");
    add_email("two@y.org", "subject", "wanted too");
    add_email("three@y.org", "subject", "other");
    show_message_table();
    search_in(1, "wanted");
    expect_make_group("friends");
    click("cmdMkGroups");
    EXPECT_EQ(group("friends"), "ann@x.org;  ann@x.org");
    EXPECT_EQ(text("RichTextBox1"), "ann@x.org;  ann@x.org");
    EXPECT_EQ(text("Text29"), "friends");
    EXPECT_EQ(control<QProgressBar>("ProgressBar2").value(), 0);
}

TEST_F(Groups, MakeGroupAddsItsMarkerToTheViewOfBeforeTheSearch)
{
    add_email("one@y.org", "subject", "wanted");
    show_message_table();
    search_in(1, "wanted");
    expect_make_group("friends");
    click("cmdMkGroups");
    EXPECT_EQ(rows("email", "email, groups, groups2"),
              (QStringList{"one@y.org||", "friends|friends|"}));
}

TEST_F(Groups, MakeGroupLeavesTheWorkTablesRecordSetClosedUntilItsRefresh)
{
    add_email("one@y.org", "subject", "wanted");
    show_message_table();
    search_in(1, "wanted");
    expect_make_group("friends");
    click("cmdMkGroups");
    EXPECT_EQ(window().work_table().record_source().text(), "select distinct email from email");
    EXPECT_FALSE(window().work_table().has_record_set());
    EXPECT_EQ(grid("MSFlexGrid1"), QStringList());
    add_system("cid@x.org", "Hello");
    click("Command28");
    EXPECT_EQ(grid("MSFlexGrid1").size(), 1);
}

TEST_F(Groups, EachSearchColumnHasItsStatement)
{
    const QStringList columns = {"email", "subject", "name", "date", "groups", "text"};
    for (int i = 0; i < columns.size(); ++i) {
        search_in(i, "x");
        boxes.expect_ok_cancel(search_question, false);
        click("cmdMkGroups");
        EXPECT_EQ(window().work_table().record_source().text(),
                  "select distinct email from email where " + columns[i] + " like '*x*' ");
    }
}

TEST_F(Groups, CancelAtTheQuestionLeavesTheViewOfBeforeInForce)
{
    add_system("cid@x.org", "Hello");
    window();
    search_in(0, "x");
    boxes.expect_ok_cancel(search_question, false);
    click("cmdMkGroups");
    EXPECT_EQ(grid("MSFlexGrid1").size(), 1);
    EXPECT_EQ(text("Text29"), "");
}

TEST_F(Groups, WithoutAColumnItSaysSoAndGoesOnWithTheViewAsItIs)
{
    add_master({"ann@x.org"});
    add_email("one@y.org", "subject", "s");
    show_message_table();
    boxes.expect_notice("Please use the drop down list to select a search criteria");
    expect_make_group("all");
    click("cmdMkGroups");
    EXPECT_EQ(group("all"), "ann@x.org;  ann@x.org"); // one row and the marker
}

TEST_F(Groups, ASearchWithoutAMatchMakesAnEmptyFile)
{
    add_master({"ann@x.org"});
    show_message_table();
    search_in(0, "nobody");
    expect_make_group("none");
    click("cmdMkGroups");
    EXPECT_EQ(group("none"), "");
}

TEST_F(Groups, AnEmptyNameMakesAnEmptyMarkerAndAFileOfItsEndingAlone)
{
    show_message_table();
    search_in(1, "nothing");
    expect_make_group({});
    click("cmdMkGroups");
    EXPECT_EQ(rows("email", "email, groups"), QStringList{"|"});
    EXPECT_EQ(group(""), "");
}

TEST_F(Groups, TheDialogsNameIsNotTakenButItsFolderIs)
{
    show_message_table();
    QDir().mkpath(home.file("lists"));
    search_in(1, "nothing");
    boxes.expect_ok_cancel(search_question, true);
    boxes.expect_input(name_question, "friends");
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file(home.file("lists/chosen.txt"), text_files);
    click("cmdMkGroups");
    EXPECT_EQ(content(home.file("lists/chosen.txt")), "(none)");
    EXPECT_EQ(content(home.file("lists/friends.txt")), "");
    EXPECT_EQ(group("friends"), "(none)");
}

TEST_F(Groups, AViewWithoutTheMarkersColumnEndsTheProgram)
{
    const auto make = [this] { // the work table has no column "groups"
        search_in(1, "x");
        boxes.expect_ok_cancel(search_question, true);
        boxes.expect_input(name_question, "friends");
        boxes.expect_run_time_error(
            "Run-time error '3265':\n\nItem not found in this collection: 'Groups'");
        click("cmdMkGroups");
    };
    EXPECT_EXIT(make(), testing::ExitedWithCode(1), testing::HasSubstr("'3265'"));
    EXPECT_EQ(rows("system"), QStringList());
}

TEST_F(Groups, AFolderThatIsMissingEndsTheProgramAfterTheMarker)
{
    const auto make = [this] {
        show_message_table();
        search_in(1, "x");
        expect_make_group("no such folder\\friends");
        boxes.expect_any_notice();
        click("cmdMkGroups");
    };
    EXPECT_EXIT(make(), testing::ExitedWithCode(1), testing::HasSubstr("Run-time error '76'"));
    EXPECT_EQ(rows("email", "email"), QStringList{"no such folder\\friends"});
}

TEST_F(Groups, AddAllMakesAFileWhenTheDatabaseIsDeclined)
{
    add_email2({"b@y.org", "a@y.org", "B@Y.ORG", "no address"});
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, false);
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file({}, text_files);
    click("Command69");
    const QStringList stored = rows("email2", "email, groups");
    EXPECT_EQ(stored.constLast(), "all|all");
    EXPECT_EQ(stored.size(), 5);
    const QStringList addresses = QString(group("all")).split(";");
    EXPECT_EQ(addresses.size(), 2); // distinct without regard to case, with an "@"
    EXPECT_FALSE(addresses[0].startsWith(' '));
    EXPECT_TRUE(addresses[1].startsWith("  ")); // of the joint, and its own
    EXPECT_EQ(group("all"), text("RichTextBox1").toUtf8());
}

TEST_F(Groups, EveryAddressAfterTheFirstBeginsWithABlank)
{
    add_email2({"a@y.org", "b@y.org", "c@y.org"});
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, false);
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file({}, text_files);
    click("Command69");
    EXPECT_EQ(group("all"), "a@y.org;  b@y.org;  c@y.org");
}

TEST_F(Groups, AddAllInTheDatabaseStoresAListOfOneAddress)
{
    add_email2({"a@y.org"});
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, true);
    boxes.expect_notice("all");
    boxes.expect_notice("a@y.org");
    click("Command69");
    EXPECT_EQ(rows("email2", "email, groups"), (QStringList{"a@y.org| all ", "all|all"}));
    EXPECT_EQ(group("all"), "(none)");
}

TEST_F(Groups, AddAllInTheDatabaseStoresInEveryRowThatContainsTheAddress)
{
    add_email2({"a@y.org", "A@Y.ORG"});
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, true);
    boxes.expect_notice("all");
    boxes.expect_notice("a@y.org");
    click("Command69");
    EXPECT_EQ(rows("email2", "email, groups"),
              (QStringList{"a@y.org| all ", "A@Y.ORG| all ", "all|all"}));
}

// The blank before it is a part of the pattern.
TEST_F(Groups, AddAllInTheDatabaseFindsNoRowForAnAddressThatIsNotTheFirst)
{
    add_email2({"no sign", "a@y.org"});
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, true);
    boxes.expect_notice("all");
    boxes.expect_notice(" a@y.org");
    click("Command69");
    EXPECT_EQ(rows("email2", "email, groups"), (QStringList{"no sign|", "a@y.org|", "all|all"}));
}

TEST_F(Groups, AddAllInTheDatabaseChangesNoRowForAListOfTwo)
{
    add_email2({"a@y.org", "b@y.org"});
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, true);
    boxes.expect_notice("all");
    boxes.expect_notice("a@y.org;  b@y.org");
    click("Command69");
    EXPECT_EQ(rows("email2", "email, groups"), (QStringList{"a@y.org|", "b@y.org|", "all|all"}));
}

TEST_F(Groups, AddAllLeavesTheMasterListsViewOnItsTable)
{
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, false);
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file({}, text_files);
    click("Command69");
    EXPECT_EQ(window().master_list().record_source().text(), "select distinct email from email2");
    EXPECT_EQ(grid("MSFlexGrid5"), QStringList{"all"});
}

// Every run empties the box that shows the list.
TEST_F(Groups, AScheduledRunWhileAQuestionStandsChangesNothingOfTheGroup)
{
    add_email2({"a@y.org", "b@y.org"});
    write_file("c:\\Ostrix\\system.log", "nobody@nowhere.example\r\n");
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, true);
    boxes.before_next_answer(
        [this] { boxes.before_next_answer([this] { click("runSchedule"); }); });
    boxes.expect_notice("all");
    boxes.expect_notice("a@y.org;  b@y.org");
    click("Command69");
    EXPECT_EQ(text("RichTextBox1"), "");
    EXPECT_EQ(rows("email2", "email, groups"), (QStringList{"a@y.org|", "b@y.org|", "all|all"}));
}

TEST_F(Groups, UpdateWritesTheListIntoTheGroupsRows)
{
    add_email("one@y.org", "groups", "my friends");
    add_email("two@y.org", "groups", "others");
    set_text("Text29", "FRIENDS");
    set_text("RichTextBox1", "a@y.org; b@y.org");
    click("cmdUpdateToDB");
    EXPECT_EQ(rows("email", "email, groups2"),
              (QStringList{"one@y.org| a@y.org; b@y.org ", "two@y.org|"}));
}

TEST_F(Groups, UpdateWantsAGroupName)
{
    boxes.expect_notice("Please enter a group name in the text box and add it to the Database by "
                        "clickong on the group button");
    click("cmdUpdateToDB");
}

TEST_F(Groups, UpdateWithAQuoteEndsTheProgram)
{
    const auto update = [this] {
        set_text("Text29", "friends");
        set_text("RichTextBox1", "o'b@y.org");
        boxes.expect_any_notice();
        click("cmdUpdateToDB");
    };
    EXPECT_EXIT(update(), testing::ExitedWithCode(1), testing::HasSubstr("'3075'"));
}

TEST_F(Groups, TheGroupNamesBoxIsTheThirdHeadingsBox)
{
    settings.write("Filter2", "Returned");
    click("Command53");
    EXPECT_EQ(text("Text29"), "Returned");
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, false);
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file({}, text_files);
    click("Command69");
    EXPECT_EQ(text("Text29"), "all");
    EXPECT_EQ(settings.read("Filter2"), "Returned"); // until somebody applies it
}

TEST_F(Groups, AHundredThousandAddressesDoNotTakeLong)
{
    run_sql("with recursive n(i) as (select 1 union all select i + 1 from n where i < 100000) "
            "insert into email2(email) select 'person.number' || i || '@mail.example.org' from n");
    boxes.expect_input(name_question, "all");
    boxes.expect_ok_cancel(database_question, false);
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file({}, text_files);
    QElapsedTimer timer;
    timer.start();
    click("Command69");
    QApplication::processEvents();
    RecordProperty("milliseconds", static_cast<int>(timer.elapsed()));
    EXPECT_EQ(group("all").count('@'), 100000);
    EXPECT_LT(timer.elapsed(), 20000); // a loaded machine's seconds: nothing grows squarely
}
} // namespace
