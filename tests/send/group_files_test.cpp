// The files of the tab "Create Group" that hold addresses alone.
#include "tests/send/group_room.h"

#include <QProgressBar>

namespace
{
TEST_F(Groups, CreateGroupSavesTheAddressBoxUnderTheChosenName)
{
    set_text("Text12", "a@y.org; b@y.org; ");
    set_text("RichTextBox1", "old");
    boxes.expect_save_file(home.file("friends.txt"), text_files);
    click("Command29");
    EXPECT_EQ(content(home.file("friends.txt")), "a@y.org; b@y.org; ");
    EXPECT_EQ(text("RichTextBox1"), "a@y.org; b@y.org; ");
}

TEST_F(Groups, CreateGroupCancelledChangesNothing)
{
    set_text("Text12", "a@y.org");
    set_text("RichTextBox1", "old");
    boxes.expect_save_file({}, text_files);
    click("Command29");
    EXPECT_EQ(text("RichTextBox1"), "old");
}

TEST_F(Groups, CreateGroupWantsAnAddress)
{
    boxes.expect_notice("You must have at least one email address in the Address Box");
    click("Command29");
}

TEST_F(Groups, AFileOfAllAddressesHoldsEachOnce)
{
    add_master({"b@y.org", "a@y.org", "A@Y.org", "no address"});
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file(home.file("all.txt"), text_files);
    click("Command30");
    const QString list = content(home.file("all.txt"));
    EXPECT_EQ(list.count('@'), 2);
    EXPECT_EQ(list.count(";  "), 1);
    EXPECT_EQ(grid("MSFlexGrid5").size(), 4); // the whole list again
    EXPECT_EQ(control<QProgressBar>("ProgressBar2").value(), 0);
}

const QString all_failed =
    "An error occurred. Please check that there is at least one record in the "
    "database. If the error continues, please report with full details to "
    "support@ostrix.example";

TEST_F(Groups, WithoutARecordThereIsNoFileOfAllAddresses)
{
    boxes.expect_notice(all_failed);
    click("Command30");
}

TEST_F(Groups, AFileOfAllAddressesThatCannotBeWrittenIsToldTheSameWay)
{
    add_master({"a@y.org"});
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file("/proc/all.txt", text_files); // where nobody may make a file
    boxes.expect_notice(all_failed);
    click("Command30");
    EXPECT_EQ(window().master_list().record_source().text(), "select * from master");
}

TEST_F(Groups, AFileOfAllAddressesCancelledWritesNothing)
{
    add_master({"a@y.org"});
    boxes.expect_notice(where_to_store);
    boxes.expect_save_file({}, text_files);
    click("Command30");
    EXPECT_EQ(boxes.shown().size(), 2);
}

TEST_F(Groups, SmallerGroupsAreExplained)
{
    boxes.expect_notice(
        "To make smaller groups click the send mail tab. Then click on 'Show all email addresses' "
        "to retrieve the email list. Next tick the 'multiple recipients' checkbox. Then click on "
        "each email address that you want to be part of a group. They will all appear in the "
        "address box. You can scroll down to quickly add adresses. Finally click on the 'make "
        "group' button and choose a file name and location for the group.");
    click("Command41");
}
} // namespace
