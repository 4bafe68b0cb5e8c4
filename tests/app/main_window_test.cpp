// The window itself: its tabs, menus and buttons, and what closing it leaves.
#include "platform/text_box.h"
#include "tests/support/program_window.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <map>

namespace
{
class Window : public ProgramWindow
{
protected:
    QStringList entries(int menu)
    {
        QStringList found;
        const auto actions = window().menuBar()->actions().at(menu)->menu()->actions();
        for (const QAction *action : actions)
            found.append(action->objectName() + ": " + action->text());
        return found;
    }
};

TEST_F(Window, BearsItsNameAndTitle)
{
    EXPECT_EQ(window().objectName(), "Velmoradrane");
    EXPECT_EQ(window().windowTitle(), "Ostrix");
}

TEST_F(Window, HoldsTheTabsInTheirOrder)
{
    const auto &strip = control<QTabWidget>("SSTab1");
    QStringList captions;
    for (int i = 0; i < strip.count(); ++i)
        captions.append(strip.tabText(i));
    EXPECT_EQ(captions, (QStringList{"View Master Table", "Send Mail", "Create Group",
                                     "Set Properties /  Log", "Schedule", "About Ostrix",
                                     "New Email (System Table)"}));
}

TEST_F(Window, TabNumbersAreIdentities)
{
    window().show_tab(11);
    EXPECT_EQ(caption_of_current_tab(), "New Email (System Table)");
    window().show_tab(0);
    EXPECT_EQ(caption_of_current_tab(), "View Master Table");
    EXPECT_THROW(window().show_tab(6), RuntimeError);
}

TEST_F(Window, HoldsTheMenus)
{
    QStringList titles;
    const auto actions = window().menuBar()->actions();
    for (const QAction *action : actions)
        titles.append(action->text());
    EXPECT_EQ(titles, (QStringList{"File", "Tools", "Help"}));
    EXPECT_EQ(
        entries(0),
        (QStringList{"Export: Export email addresses (See Help File: Section 3)",
                     "Import: Import email addresses from CSV file (See Help File: Section 3)",
                     "Backup: Backup database",
                     "ManipulateText: Manipulate a text file for import (See Help File: Section "
                     "3.1)"}));
    EXPECT_EQ(entries(1),
              (QStringList{"ReadTableName: Get Table Name", "ChangeTableName: Change Table Name",
                           "WarningSwitch: Do Not Show Retrieval Warnings",
                           "SaveGrid: Save Grid As CSV", "PrintAddresses: Print eMail Addresses",
                           "ImportHelp: Import From Another Mail Program",
                           "ReviewFilter: Filter Window", "MailProfiles: Mail Profiles"}));
    EXPECT_EQ(entries(2), QStringList{"HelpFile: HelpFile"});
}

struct Caption
{
    const char *name;
    const char *caption;
    const char *tool_tip = "";
};

class Buttons : public ProgramWindow, public testing::WithParamInterface<Caption>
{
};

TEST_P(Buttons, BearTheirCaptionsAndToolTips)
{
    const auto &button = control<QAbstractButton>(GetParam().name);
    EXPECT_EQ(button.text(), GetParam().caption);
    EXPECT_EQ(button.toolTip(), GetParam().tool_tip);
}

constexpr auto isp_tip = "Get the configured ISP subject heading";
constexpr auto manual_tip = "Manually filter using this setting";
INSTANTIATE_TEST_SUITE_P(
    MasterTable, Buttons,
    testing::Values(Caption{"Command20", "Refresh"},
                    Caption{"Command44", "Add To Master",
                            "This button adds all the unique email addresses from the system "
                            "database to the master database"},
                    Caption{"Command43", "Delete A Record"},
                    Caption{"Command42", "Delete All Records"}, Caption{"Command33", "Sort"},
                    Caption{"Command36", "Count"}, Caption{"Command21", "Change"},
                    Caption{"cmdADD", "Add"}, Caption{"Command19", "Search Email"},
                    Caption{"Command37", "Search Name"},
                    Caption{"cmdLargeScreen", "View Large Screen"}));
INSTANTIATE_TEST_SUITE_P(
    SendMail, Buttons,
    testing::Values(Caption{"Command13", "Send Mail", "Send eMails"},
                    Caption{"cmdAttachment", "Attachment", "Add An Attachment"},
                    Caption{"Command14", "Refresh", "Clear Address List"},
                    Caption{"Command26", "Show all email addresses"},
                    Caption{"Command34", "Get File"}, Caption{"Command46", ""},
                    Caption{"Command47", "Get File"}, Caption{"Command29", "Create Group"},
                    Caption{"Check9", "Use Mail Client"},
                    Caption{"Check14", "Multiple Recipients"}));
INSTANTIATE_TEST_SUITE_P(
    CreateGroup, Buttons,
    testing::Values(Caption{"cmdMkGroups", "Make Group"}, Caption{"cmdUpdateToDB", "Update"},
                    Caption{"Command69", "Add ALL eMail Addresses From Database To A Group"},
                    Caption{"Command30", "Make a text file of all addresses"},
                    Caption{"Command41", "Make smaller groups"},
                    Caption{"cmdGetFile", "Get File"}));
INSTANTIATE_TEST_SUITE_P(
    Properties, Buttons,
    testing::Values(
        Caption{"Command7", "Get", "Get the presently configured subject heading"},
        Caption{"cmdApply", "Apply", "Change the currently configured subject heading"},
        Caption{"Command9", "Del", "Delete the presently configured subject heading"},
        Caption{"cmdDel", "Delete",
                "Delete all emails in the database with the configured subject heading"},
        Caption{"Command5", "Get", isp_tip}, Caption{"Command52", "Get", isp_tip},
        Caption{"Command53", "Get", isp_tip}, Caption{"Command8", "Apply"},
        Caption{"Command56", "Apply"}, Caption{"Command57", "Apply"}, Caption{"Command6", "Del"},
        Caption{"Command54", "Del"}, Caption{"Command55", "Del"},
        Caption{"cmdFilterit", "Filter", manual_tip}, Caption{"Command58", "Filter1", manual_tip},
        Caption{"Command59", "Filter2", manual_tip},
        Caption{"cmdGet", "Get",
                "Get the currently configured mail logon profile (normally used for MS Exchange)"},
        Caption{"Command4", "Apply / Change",
                "Change the mail logon profile (normally needed for logging onto an MS Exchange)"},
        Caption{"cmdDel1", "Del", "Delete the mail logon profile when not needed"},
        Caption{"cmdGet2", "Get", "Get the presently configured database location"},
        Caption{"Command35", "Apply / Change", "Change the database location"},
        Caption{"Command1", "Log"}, Caption{"Command38", "View Log"},
        Caption{"Command39", "Clear Log"}, Caption{"Command40", "Set Log Path"},
        Caption{"Command10", "Read log and delete from database"}));
INSTANTIATE_TEST_SUITE_P(
    Schedule, Buttons,
    testing::Values(Caption{"Check1", "Monday"}, Caption{"Check2", "Tuesday"},
                    Caption{"Check3", "Wednesday"}, Caption{"Check4", "Thursday"},
                    Caption{"Check5", "Friday"}, Caption{"Check6", "Saturday"},
                    Caption{"Check7", "Sunday"}, Caption{"Check8", "Everyday"},
                    Caption{"Command15", "Start Schedule", "Start the schedule"},
                    Caption{"Command16", "Stop", "Stop all scheduled tasks"},
                    Caption{"Command17", "Refresh", "Stop and refresh lists and text"},
                    Caption{"runSchedule", "", "This mirrors command2 for scheduler"}));
INSTANTIATE_TEST_SUITE_P(
    Others, Buttons,
    testing::Values(Caption{"Command31", "test grab particular email addresss from text message"},
                    Caption{"Command32", "parse function"}, Caption{"Command11", ""},
                    Caption{"Command22", "delete all incorrect addresses(filter)"},
                    Caption{"Command23", "delete incorrect subject headings from both tables"},
                    Caption{"Command27", "Command27"},
                    Caption{"Command2", "Get Emails",
                            "Use this to manually retrieve email messages from your inbox"},
                    Caption{"Command28", "Refresh", "Refresh the database view"},
                    Caption{"Command25", "Search",
                            "Choose a column and enter all or part of the word you want to search"},
                    Caption{"Command45", "Delete All"}));

TEST_F(Window, BoxesListsAndGridsExist)
{
    for (const char *name :
         {"Text1",  "Text2",  "Text3",  "Text4",  "Text7",  "Text8",  "Text9",  "Text10", "Text13",
          "Text15", "Text16", "Text17", "Text18", "Text19", "Text20", "Text21", "Text23", "Text25",
          "Text26", "Text28", "Text29", "Text30", "Text31", "Text32", "Text33", "Text34"})
        EXPECT_NE(window().findChild<QLineEdit *>(name), nullptr) << name;
    for (const char *name :
         {"Text12", "Text14", "Text27", "Text35", "RichTextBox1", "RichTextBox2"})
        EXPECT_NE(window().findChild<TextBox *>(name), nullptr) << name;
    for (const char *name : {"ProgressBar1", "ProgressBar2", "ProgressBar3"}) {
        const auto &bar = control<QProgressBar>(name);
        EXPECT_EQ(bar.minimum(), 0) << name;
        EXPECT_EQ(bar.maximum(), 100) << name;
        EXPECT_EQ(bar.value(), 0) << name;
    }
    EXPECT_EQ(control<QListWidget>("List1").toolTip(),
              "List of All eMail Addresses in the Database");
    EXPECT_EQ(control<QListWidget>("List2").count(), 0);
    EXPECT_EQ(control<QSpinBox>("UpDown1").maximum(), 24);
    EXPECT_EQ(control<QSpinBox>("UpDown2").maximum(), 60);
    EXPECT_EQ(control<QLineEdit>("Text13").placeholderText(), "Insert Subject Here");
    EXPECT_EQ(control<TextBox>("Text12").toolTip(), "Insert eMail Address Here");
    EXPECT_EQ(control<TextBox>("Text14").placeholderText(), "Insert Message HEre");
    EXPECT_EQ(control<QLineEdit>("Text30").toolTip(), "For System Use");
}

TEST_F(Window, SearchColumnsAreOfferedAndNoneIsChosen)
{
    const std::map<QString, QStringList> columns{
        {"Combo1", {"eMail", "Subject"}},
        {"Combo2", {"eMail", "Subject", "Name", "Date", "Groups", "Text"}}};
    for (const auto &[name, expected] : columns) {
        const auto &combo = control<QComboBox>(name);
        QStringList items;
        for (int i = 0; i < combo.count(); ++i)
            items.append(combo.itemText(i));
        EXPECT_EQ(items, expected);
        EXPECT_EQ(combo.currentIndex(), -1);
        EXPECT_EQ(combo.placeholderText(), "Search Column?");
        EXPECT_EQ(combo.toolTip(), "Search Column?");
    }
}

TEST_F(Window, LabelsAreNamedAndShownAsPlainText)
{
    const std::map<QString, QString> labels{
        {"Label1", "Set Interval (reduce to 0 to view hours or minutes)"},
        {"Label17", "Hours"},
        {"Label18", "Minutes"},
        {"Label28", "Address (Double Click Address Box To View Complete List)"},
        {"Label29", "Subject"},
        {"Label30", "Message"},
        {"Label33", "Session record for this schedule period"},
        {"Label35", "Last eMail retrieval finished at:"}};
    for (const auto &[name, caption] : labels)
        EXPECT_EQ(text(name), caption);
    const auto all = window().findChildren<QLabel *>();
    for (const QLabel *label : all)
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->objectName().toStdString();
}

// What a person can click must do something, and only one thing.
TEST_F(Window, EveryEnabledControlThatCanBeClickedIsBoundOnce)
{
    const auto &bound = window().handlers().bound();
    const auto buttons = window().findChildren<QPushButton *>();
    for (const QPushButton *button : buttons)
        EXPECT_EQ(bound.count(button), button->isEnabled() ? 1 : 0)
            << button->objectName().toStdString();
    for (const char *name : {"Check8", "Check14", "UpDown1", "UpDown2", "Timer1"})
        EXPECT_EQ(bound.count(&control<QObject>(name)), 1) << name;
    // A click and Enter fill the address box, a double click loads a file into it.
    EXPECT_EQ(bound.count(&control<QListWidget>("List1")), 3);
    EXPECT_EQ(bound.count(&control<TextBox>("Text12")), 1);
    const auto entries = window().menuBar()->findChildren<QAction *>();
    for (const QAction *entry : entries) {
        if (entry->menu() == nullptr && !entry->objectName().isEmpty()) {
            EXPECT_EQ(bound.count(entry), entry->isEnabled() ? 1 : 0)
                << entry->objectName().toStdString();
        }
    }
}

TEST_F(Window, HiddenControlsAreNotShown)
{
    for (const char *name : {"Command11", "Command22", "Command23", "Command27", "runSchedule"})
        EXPECT_TRUE(control<QPushButton>(name).isHidden()) << name;
    EXPECT_TRUE(control<QLineEdit>("Text8").isHidden());
}

TEST_F(Window, LargeScreenShowsTheMasterListUntilEscape)
{
    add_master({"ann@example.org"});
    click("cmdLargeScreen");
    QPointer<QWidget> screen = window().findChild<QWidget *>("LargeScreen");
    ASSERT_NE(screen, nullptr);
    EXPECT_TRUE(screen->isMaximized());
    auto *large_grid = screen->findChild<QTableView *>();
    EXPECT_EQ(large_grid->model(), control<QTableView>("MSFlexGrid5").model());
    click("cmdLargeScreen"); // once more: the same window
    EXPECT_EQ(window().findChildren<QWidget *>("LargeScreen").size(), 1);
    QTest::keyClick(large_grid, Qt::Key_Escape);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(screen, nullptr);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(Window, ProgressIsToldWithThousandsSeparatorsAndClearedAtTheEnd)
{
    window().progress().tell("Message", 532, 10000);
    EXPECT_EQ(text("progress_text"), "Message 532 of 10,000");
    window().progress().clear();
    EXPECT_EQ(text("progress_text"), "");
}

TEST_F(Window, ClosingItLeavesTheDatabaseFileAlone)
{
    add_master({"ann@example.org"});
    window().master_list().execute("insert into master(email) select email from master");
    window().work_table().refresh();
    close_window();
    EXPECT_EQ(QDir(home.file("data/Ostrix")).entryList(QDir::Files), QStringList{"Ostrix.mdb"});
    EXPECT_EQ(rows("master", "email"), (QStringList{"ann@example.org", "ann@example.org"}));
}

TEST_F(Window, IsUsableAtItsSmallestSizeOnASmallDesktop)
{
    EXPECT_LE(window().minimumSizeHint().width(), 1000);
    EXPECT_LE(window().minimumSizeHint().height(), 700);
}
} // namespace
