// The settings' Get, Apply and Del, through the window.
#include "tests/support/program_window.h"

namespace
{
const QString enter_a_value = "Please enter a value in the text box";

QString presently(const QString &value)
{
    return "You setting is presently " + value + ". Do you want to change this?";
}

struct Heading
{
    const char *key;
    const char *box;
    const char *get;
    const char *apply;
    const char *del;
    const char *apply_question;
    const char *applied;
    const char *delete_question;
};

void PrintTo(const Heading &heading, std::ostream *out)
{
    *out << heading.key;
}

class SubjectHeadings : public ProgramWindow, public testing::WithParamInterface<Heading>
{
protected:
    const Heading &heading = GetParam();
    const QString key = heading.key;

    void type_and_apply(const QString &value)
    {
        set_text(heading.box, value);
        click(heading.apply);
    }
};

TEST_P(SubjectHeadings, GetShowsTheStoredTextInPlaceOfWhatWasThere)
{
    settings.write(key, "Undelivered Mail");
    set_text(heading.box, "typed");
    click(heading.get);
    EXPECT_EQ(text(heading.box), "Undelivered Mail");
}

TEST_P(SubjectHeadings, GetOfAnAbsentHeadingEmptiesTheBoxSilently)
{
    set_text(heading.box, "typed");
    click(heading.get);
    EXPECT_EQ(text(heading.box), "");
}

TEST_P(SubjectHeadings, ApplyStoresAFirstHeadingAfterOneQuestion)
{
    boxes.expect_yes_no(heading.apply_question, true);
    boxes.expect_notice(heading.applied);
    type_and_apply("Returned mail");
    EXPECT_EQ(settings.read(key), "Returned mail");
}

TEST_P(SubjectHeadings, ApplyStopsAtNo)
{
    boxes.expect_yes_no(heading.apply_question, false);
    type_and_apply("Returned mail");
    EXPECT_EQ(settings.read(key, "absent"), "absent");
    EXPECT_EQ(text(heading.box), "Returned mail");
}

TEST_P(SubjectHeadings, ApplyOfAnEmptyBoxDoesNotAskAboutTheStoredHeading)
{
    settings.write(key, "old");
    boxes.expect_yes_no(heading.apply_question, true);
    boxes.expect_notice(enter_a_value);
    type_and_apply("");
    EXPECT_EQ(settings.read(key), "old");
}

TEST_P(SubjectHeadings, ApplyAsksBeforeItReplacesAStoredHeading)
{
    settings.write(key, "old");
    boxes.expect_yes_no(heading.apply_question, true);
    boxes.expect_yes_no(presently("old"), true);
    boxes.expect_notice(heading.applied);
    type_and_apply("new");
    EXPECT_EQ(settings.read(key), "new");
}

TEST_P(SubjectHeadings, ApplyKeepsTheStoredHeadingAndTheTypedTextWhenTheSecondAnswerIsNo)
{
    settings.write(key, "old");
    boxes.expect_yes_no(heading.apply_question, true);
    boxes.expect_yes_no(presently("old"), false);
    type_and_apply("new");
    EXPECT_EQ(settings.read(key), "old");
    EXPECT_EQ(text(heading.box), "new");
}

TEST_P(SubjectHeadings, ApplyOfTheStoredHeadingAsksAndReportsAllTheSame)
{
    settings.write(key, "same");
    boxes.expect_yes_no(heading.apply_question, true);
    boxes.expect_yes_no(presently("same"), true);
    boxes.expect_notice(heading.applied);
    type_and_apply("same");
    EXPECT_EQ(settings.read(key), "same");
}

TEST_P(SubjectHeadings, AHeadingThatLooksLikeMarkupIsShownAsPlainText)
{
    settings.write(key, "<b>%1</b>");
    boxes.expect_yes_no(heading.apply_question, true);
    boxes.expect_yes_no(presently("<b>%1</b>"), false);
    type_and_apply("new");
}

TEST_P(SubjectHeadings, DelForgetsTheHeadingAndLeavesTheBox)
{
    settings.write(key, "old");
    set_text(heading.box, "typed");
    boxes.expect_ok_cancel(heading.delete_question, true);
    boxes.expect_notice("Your setting has been deleted");
    click(heading.del);
    EXPECT_EQ(settings.read(key, "absent"), "absent");
    EXPECT_EQ(text(heading.box), "typed");
}

TEST_P(SubjectHeadings, DelStopsAtCancel)
{
    settings.write(key, "old");
    boxes.expect_ok_cancel(heading.delete_question, false);
    click(heading.del);
    EXPECT_EQ(settings.read(key), "old");
}

TEST_P(SubjectHeadings, DelOfAnAbsentHeadingIsSilentAfterItsQuestion)
{
    boxes.expect_ok_cancel(heading.delete_question, true);
    click(heading.del);
    EXPECT_EQ(boxes.shown().size(), 1);
}

constexpr auto returned_question =
    "Do you want to add a new or change your Returned eMail Subject Heading?";
constexpr auto returned_applied = "Your Filter setting has been changed!";

// The three delete questions of returned mail differ in their blanks.
INSTANTIATE_TEST_SUITE_P(
    All, SubjectHeadings,
    testing::Values(
        Heading{"Delete", "Text10", "Command7", "cmdApply", "Command9",
                "Do you want to add a new or change your Delete Subject Heading?",
                "Your Delete setting has been changed!",
                "Are you sure you want to delete your ' Delete Subject Heading ' configuration?"},
        Heading{"Filter", "Text9", "Command5", "Command8", "Command6", returned_question,
                returned_applied,
                "Are you sure you want to delete this  'ISP Returned eMail Subject Heading "
                "'setting?"},
        Heading{"Filter1", "Text28", "Command52", "Command56", "Command54", returned_question,
                returned_applied,
                "Are you sure you want to delete this  'ISP Returned eMail Subject Heading ' "
                "setting?"},
        Heading{"Filter2", "Text29", "Command53", "Command57", "Command55", returned_question,
                returned_applied,
                "Are you sure you want to delete this  'ISP Returned eMail Subject Heading "
                "'setting?"}));

class Profile : public ProgramWindow
{
protected:
    const QString question =
        "This will allow you to login with a Profile name for Exchange / Internet Mail and other "
        "Mail Services. Do you wish to proceed?";
    const QString change_question = "Are you sure you want to change your Profile name?";

    void apply(const QString &name)
    {
        set_text("Text3", name);
        click("Command4");
    }
};

TEST_F(Profile, GetShowsTheStoredName)
{
    settings.write("Profile", "office");
    click("cmdGet");
    EXPECT_EQ(text("Text3"), "office");
}

TEST_F(Profile, AFirstNameIsStoredAndToldToTheMailSession)
{
    boxes.expect_ok_cancel(question, true);
    boxes.expect_notice("Your Profile name has been added and stored!");
    apply("office");
    EXPECT_EQ(settings.read("Profile"), "office");
    EXPECT_EQ(mail.calls, QStringList{"set_UserName(office)"});
    EXPECT_EQ(settings.read("pendral", "eapp", "profile", ""), "office");
}

TEST_F(Profile, CancelEmptiesTheBox)
{
    settings.write("Profile", "office");
    boxes.expect_ok_cancel(question, false);
    apply("home");
    EXPECT_EQ(text("Text3"), "");
    EXPECT_EQ(settings.read("Profile"), "office");
    EXPECT_EQ(mail.calls, QStringList{});
}

TEST_F(Profile, AnEmptyBoxIsRefused)
{
    boxes.expect_ok_cancel(question, true);
    boxes.expect_notice("Please write your Profile name in the text box.");
    apply("");
    EXPECT_EQ(settings.read("Profile", "absent"), "absent");
}

TEST_F(Profile, AnotherNameIsStoredAfterASecondQuestion)
{
    settings.write("Profile", "office");
    boxes.expect_ok_cancel(question, true);
    boxes.expect_ok_cancel(change_question, true);
    boxes.expect_notice("Your Profile name has been changed to home");
    apply("home");
    EXPECT_EQ(settings.read("Profile"), "home");
    EXPECT_EQ(mail.calls, QStringList{"set_UserName(home)"});
}

TEST_F(Profile, TheSecondQuestionsCancelKeepsTheTypedName)
{
    settings.write("Profile", "office");
    boxes.expect_ok_cancel(question, true);
    boxes.expect_ok_cancel(change_question, false);
    apply("home");
    EXPECT_EQ(text("Text3"), "home");
    EXPECT_EQ(settings.read("Profile"), "office");
    EXPECT_EQ(mail.calls, QStringList{});
}

TEST_F(Profile, TheSameNameIsReportedInTheWordsOfThePath)
{
    settings.write("Profile", "office");
    boxes.expect_ok_cancel(question, true);
    boxes.expect_notice("This path location is already set");
    apply("office");
    EXPECT_EQ(mail.calls, QStringList{});
}

TEST_F(Profile, DelReportsInEveryCase)
{
    const QString sometime =
        "Sometime a Profile is not needed. Are you sure you want to delete your Profile?";
    settings.write("Profile", "office");
    boxes.expect_ok_cancel(sometime, false);
    click("cmdDel1");
    EXPECT_EQ(settings.read("Profile"), "office");
    for (int time = 0; time < 2; ++time) { // the second time there is nothing to delete
        boxes.expect_ok_cancel(sometime, true);
        boxes.expect_notice("Your Profile has been deleted");
        click("cmdDel1");
        EXPECT_EQ(settings.read("Profile", "absent"), "absent");
    }
}

class Location : public ProgramWindow
{
protected:
    Location() { write_file(other, ""); }

    void expect_opening(bool proceed)
    {
        boxes.expect_notice(
            "You may need to restart the application after you have changed the database location! "
            "Please note that if you point to an invalid database or file the application may hang "
            "and you may need to restart.",
            NoticeIcon::Information);
        boxes.expect_ok_cancel("This will change the database location. Do you wish to proceed?",
                               proceed);
    }

    const QString other = home.file("other.mdb");
    const QString change_question = "Are you sure you want to change the database location?";
};

TEST_F(Location, GetShowsTheStoredPath)
{
    set_text("Text25", "typed");
    click("cmdGet2");
    EXPECT_EQ(text("Text25"), database);
}

TEST_F(Location, CancelChangesNothing)
{
    expect_opening(false);
    click("Command35");
    EXPECT_EQ(settings.read("Database"), database);
}

TEST_F(Location, WithoutAFileThePathIsAskedFor)
{
    expect_opening(true);
    boxes.expect_open_file("");
    boxes.expect_notice("You must give the path to the database");
    click("Command35");
    EXPECT_EQ(text("Text25"), database);
    EXPECT_EQ(settings.read("Database"), database);
}

TEST_F(Location, AnotherFileIsStoredAndTheWorkTablePointedAtIt)
{
    expect_opening(true);
    boxes.expect_open_file(other);
    boxes.expect_ok_cancel(change_question, true);
    boxes.expect_notice("Database location changed!!");
    click("Command35");
    EXPECT_EQ(settings.read("Database"), other);
    EXPECT_EQ(text("Text25"), other);
    EXPECT_EQ(window().work_table().database_name(), other);
    EXPECT_EQ(window().master_list().database_name(), database);
}

TEST_F(Location, TheSecondQuestionsCancelPutsTheStoredPathBack)
{
    expect_opening(true);
    boxes.expect_open_file(other);
    boxes.expect_ok_cancel(change_question, false);
    click("Command35");
    EXPECT_EQ(text("Text25"), database);
    EXPECT_EQ(settings.read("Database"), database);
    EXPECT_EQ(window().work_table().database_name(), database);
}

TEST_F(Location, TheSameFileIsReported)
{
    settings.write("Database", native_database());
    expect_opening(true);
    boxes.expect_open_file(native_database());
    boxes.expect_notice("This path location is already set");
    click("Command35");
}

TEST_F(Location, AnAbsentSettingIsAskedAboutLikeAnyOther)
{
    window();
    settings.remove("Database");
    expect_opening(true);
    boxes.expect_open_file(other);
    boxes.expect_ok_cancel(change_question, false);
    click("Command35");
    EXPECT_EQ(text("Text25"), "0");
}

TEST_F(Location, AnEmptySettingIsAFirstTime)
{
    window();
    settings.write("Database", "");
    expect_opening(true);
    boxes.expect_open_file(other);
    boxes.expect_notice("The database location has been modified and the path stored");
    click("Command35");
    EXPECT_EQ(settings.read("Database"), other);
    EXPECT_EQ(window().work_table().database_name(), other);
}
} // namespace
