// A retrieval with a mail profile: the real store in the real window.
#include "mail/log_on_dialog.h"
#include "mail/profile_mail_store.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/program_window.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace
{
class ProfileRun : public ProgramWindow
{
protected:
    ProfileRun()
    {
        qputenv("USER", "no-such-user-here");
        settings.write("WarningMessages", "1");
        settings.write("Profile", "Lists");
        put_file(home.file("lists/new/1.a"), ::mail("From: Ann <ann@example.org>\nSubject: Hello\n"
                                                    "Date: 2 Jan 2006 10:20:30 +0100"));
    }
    ~ProfileRun() override { log_on.set_parent(nullptr); }

    MailStore &mail_store() override { return store; }

    void save_profile()
    {
        MailProfile profile;
        profile.name = "lists";
        profile.inbox = InboxKind::Maildir;
        profile.inbox_path = home.file("lists");
        profiles.save(profile);
    }
    void get_emails()
    {
        const QString in_log = " All deleted entries can be viewed in the log file.";
        boxes.expect_ok_cancel("Do you want delete incorrect or invalid addresses as returned by "
                               "your ISP?" +
                                   in_log,
                               false);
        boxes.expect_ok_cancel(
            "Do you want delete messages with a specific subject heading?" + in_log, false);
        boxes.expect_ok_cancel("Is it OK to log on using the Profile name:  Lists   ? If you click "
                               "CANCEL you can change this setting in the properties section. ",
                               true);
        expect_more();
        click("Command2");
    }
    std::function<void()> expect_more = [] {};
    static void press(QDialog &dialog, QDialogButtonBox::StandardButton which)
    {
        QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(which), Qt::LeftButton);
    }

    QtLogOnDialog log_on{[this] { return window().is_attended(); }};
    MailAccounts attended_accounts{profiles, keychain, &log_on};
    ProfileMailStore store{attended_accounts, inbox_opener({})};
};

TEST_F(ProfileRun, ReadsTheInboxOfTheProfileThatIsSet)
{
    save_profile();
    get_emails();
    EXPECT_EQ(rows("system", "email, subject, date, name"),
              QStringList{"ann@example.org|Hello|2006-01-02 10:20:30|Ann"});
}

TEST_F(ProfileRun, AnUnknownProfileOpensTheLogOnDialog)
{
    expect_more = [this] {
        boxes.expect_dialog("Log on to the mail store", [this](QDialog &dialog) {
            EXPECT_EQ(dialog.findChild<QLabel *>("reason")->text(),
                      "There is no mail profile named 'Lists'.");
            QTest::keyClicks(dialog.findChild<QLineEdit *>("path"), home.file("lists"));
            press(dialog, QDialogButtonBox::Ok);
        });
    };
    get_emails();
    EXPECT_EQ(rows("system", "subject"), QStringList{"Hello"});
}

TEST_F(ProfileRun, AProfileMadeInTheLogOnDialogIsUsed)
{
    log_on.set_profile_editor([this] {
        window().MailProfiles_Click();
        return attended_accounts.sound_profiles();
    });
    expect_more = [this] {
        boxes.expect_dialog("Log on to the mail store", [](QDialog &dialog) {
            QTest::mouseClick(dialog.findChild<QPushButton *>("edit_profiles"), Qt::LeftButton);
            dialog.findChild<QAbstractButton *>("use_profile")->click();
            press(dialog, QDialogButtonBox::Ok);
        });
        boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
            save_profile(); // what typing it in would do
            dialog.reject();
        });
    };
    get_emails();
    EXPECT_EQ(rows("system", "subject"), QStringList{"Hello"});
}

using ProfileRunDeath = ProfileRun;

TEST_F(ProfileRunDeath, WithoutAnAnswerTheRunEndsTheProgram)
{
    EXPECT_EXIT(
        {
            expect_more = [this] {
                boxes.expect_dialog("Log on to the mail store",
                                    [](QDialog &dialog) { dialog.reject(); });
                boxes.expect_run_time_error(
                    "Run-time error '32000':\n\nThere is no mail profile named 'Lists'.");
            };
            get_emails();
        },
        testing::ExitedWithCode(1), "There is no mail profile named 'Lists'");
}

TEST_F(ProfileRun, AnUnattendedRunTellsTheErrorAndShowsNoDialog)
{
    click("runSchedule");
    EXPECT_EQ(boxes.shown(), QStringList());
    EXPECT_TRUE(text("progress_text").contains("There is no mail profile named 'Lists'."))
        << text("progress_text").toStdString();
    EXPECT_EQ(rows("system"), QStringList());
}
} // namespace
