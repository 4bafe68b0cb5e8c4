// The table name and the warning switch, which only the menu "Tools" reaches.
#include "app/warning_switch.h"
#include "tests/support/program_window.h"

#include <QAction>

namespace
{
class TableNameCommands : public ProgramWindow
{
protected:
    const QString question =
        "This will change the name within your database. Do you wish to proceed?";
    const QString change_question = "Are you sure you want to change the table name location?";

    void change_to(const QString &name)
    {
        set_text("Text2", name);
        choose("ChangeTableName");
    }
    QString source() { return window().work_table().record_source().text(); }
};

TEST_F(TableNameCommands, ReadShowsTheStoredName)
{
    settings.write("Table", "email");
    set_text("Text2", "typed");
    choose("ReadTableName");
    EXPECT_EQ(text("Text2"), "email");
}

TEST_F(TableNameCommands, AFirstNameIsStoredAndSetWithoutARefresh)
{
    add_system("ann@example.org", "hello");
    boxes.expect_ok_cancel(question, true);
    boxes.expect_notice("The table name has been modified and stored");
    change_to("email");
    EXPECT_EQ(settings.read("Table"), "email");
    EXPECT_EQ(source(), "email");
    EXPECT_EQ(grid("MSFlexGrid1").size(), 1);
}

TEST_F(TableNameCommands, CancelAndAnEmptyBoxChangeNothing)
{
    boxes.expect_ok_cancel(question, false);
    change_to("email");
    boxes.expect_ok_cancel(question, true);
    boxes.expect_notice("Please insert the table name in the text box");
    change_to("");
    EXPECT_EQ(settings.read("Table", "absent"), "absent");
    EXPECT_EQ(source(), "system");
}

TEST_F(TableNameCommands, AnotherNameIsAskedAbout)
{
    settings.write("Table", "email");
    boxes.expect_ok_cancel(question, true);
    boxes.expect_ok_cancel(change_question, false);
    change_to("email2");
    EXPECT_EQ(text("Text2"), "email");
    EXPECT_EQ(source(), "system");
    boxes.expect_ok_cancel(question, true);
    boxes.expect_ok_cancel(change_question, true);
    boxes.expect_notice("Table name changed!!");
    change_to("email2");
    EXPECT_EQ(settings.read("Table"), "email2");
    EXPECT_EQ(source(), "email2");
}

TEST_F(TableNameCommands, TheSameNameIsReported)
{
    settings.write("Table", "email");
    boxes.expect_ok_cancel(question, true);
    boxes.expect_notice("This table name is already set");
    change_to("email");
    EXPECT_EQ(source(), "system");
}

struct Switching
{
    bool checked;
    const char *stored;
    const char *question;
};

class WarningQuestion : public testing::TestWithParam<Switching>
{
};

TEST_P(WarningQuestion, DependsOnWhatIsStored)
{
    const Switching &switching = GetParam();
    EXPECT_EQ(warning_question(switching.checked, switching.stored), switching.question);
}

constexpr auto store_question = "Do you want to store this configuration?";
constexpr auto change_configuration = "Do you want to change this configuration?";
INSTANTIATE_TEST_SUITE_P(All, WarningQuestion,
                         testing::Values(Switching{true, "", store_question},
                                         Switching{true, "1", ""},
                                         Switching{true, "0", change_configuration},
                                         Switching{true, "yes", change_configuration},
                                         Switching{false, "0", ""},
                                         Switching{false, "", change_configuration},
                                         Switching{false, "1", change_configuration}));

class Warnings : public ProgramWindow
{
protected:
    bool is_ticked() { return control<QAction>("WarningSwitch").isChecked(); }
    QString stored() const { return settings.read("WarningMessages", "absent"); }
};

TEST_F(Warnings, AreSwitchedOffAndOnAgain)
{
    boxes.expect_ok_cancel(store_question, true);
    choose("WarningSwitch");
    EXPECT_EQ(stored(), "1");
    EXPECT_TRUE(is_ticked());
    boxes.expect_ok_cancel(change_configuration, true);
    choose("WarningSwitch");
    EXPECT_EQ(stored(), "0");
    EXPECT_FALSE(is_ticked());
}

TEST_F(Warnings, CancelLeavesTheStoreAndTheTick)
{
    settings.write("WarningMessages", "1");
    boxes.expect_ok_cancel(change_configuration, false);
    choose("WarningSwitch");
    EXPECT_EQ(stored(), "1");
    EXPECT_TRUE(is_ticked());
}
} // namespace
