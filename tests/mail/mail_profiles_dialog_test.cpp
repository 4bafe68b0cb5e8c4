// "Mail Profiles" in the menu "Tools", with real clicks; the servers alone are the test's own.
#include "tests/mail/profiles_room.h"

#include <QFileInfo>

namespace
{
TEST_F(MailProfiles, AProfileIsMadeAndStored)
{
    open([](const ProfilesWindow &window) {
        EXPECT_EQ(window.dialog().objectName(), "MailProfilesDialog");
        EXPECT_EQ(window.names(), QStringList());
        EXPECT_FALSE(window.control<QPushButton>("delete_profile").isEnabled());
        window.type("name", "Work");
        window.type("sender_name", "Ann Smith");
        window.type("sender_address", "ann@example.org");
        window.choose("inbox_kind", "IMAP server");
        window.type("inbox_server/host", " imap.example.org ");
        window.type("inbox_server/user", "ann");
        window.type("inbox_server/password", "s3cret");
        window.type("mailbox", "Lists");
        window.choose("outgoing_kind", "SMTP server");
        window.type("outgoing_server/host", "smtp.example.org");
        window.choose("outgoing_server/security", "Encrypted after STARTTLS");
        window.choose("outgoing_server/sign_in", "A token (OAuth 2)");
        window.type("outgoing_server/user", "ann");
        window.type("outgoing_server/token_command", "/bin/token \"a b\"");
        window.control<QSpinBox>("outgoing_server/port").setValue(2525);
        window.click("save_profile");
        EXPECT_EQ(window.result(), "Saved.");
        EXPECT_EQ(window.names(), QStringList{"Work"});
        EXPECT_EQ(window.text("inbox_server/password"), "");
        window.close();
    });
    MailProfile expected = stored("Work");
    expected.sender_name = "Ann Smith";
    expected.inbox_path = "Lists";
    expected.outgoing_server = {"smtp.example.org", 2525,  LineSecurity::StartTls,
                                SignInKind::Token,  "ann", "/bin/token \"a b\""};
    ASSERT_TRUE(profiles.find("work"));
    EXPECT_EQ(profiles.find("work")->profile, expected);
    EXPECT_EQ(keychain.entries,
              (std::map<QString, QString>{{"work inbox ann on imap.example.org", "s3cret"}}));
    EXPECT_FALSE(content(home.file("config/Pendral/profiles.ini")).contains("s3cret"));
}

TEST_F(MailProfiles, OnlyTheFieldsThatAreNeededShow)
{
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        EXPECT_FALSE(window.is_shown("inbox_path") || window.is_shown("inbox_server"));
        EXPECT_FALSE(window.is_shown("outgoing_server"));
        EXPECT_TRUE(window.is_shown("sendmail_program"));
        window.choose("inbox_kind", "Maildir folder");
        EXPECT_TRUE(window.is_shown("inbox_path"));
        EXPECT_FALSE(window.is_shown("inbox_server") || window.is_shown("mailbox"));
        window.choose("inbox_kind", "POP3 server");
        EXPECT_TRUE(window.is_shown("inbox_server/host"));
        EXPECT_FALSE(window.is_shown("mailbox") || window.is_shown("inbox_path"));
        EXPECT_EQ(window.control<QSpinBox>("inbox_server/port").text(), "standard (995)");
        window.choose("inbox_server/security", "Encrypted after STARTTLS");
        EXPECT_EQ(window.control<QSpinBox>("inbox_server/port").text(), "standard (110)");
        EXPECT_TRUE(window.is_shown("inbox_server/password"));
        EXPECT_FALSE(window.is_shown("inbox_server/token_command"));
        window.choose("inbox_server/sign_in", "A token (OAuth 2)");
        EXPECT_FALSE(window.is_shown("inbox_server/password"));
        EXPECT_TRUE(window.is_shown("inbox_server/token_command"));
        window.choose("inbox_server/sign_in", "Nothing");
        EXPECT_FALSE(window.is_shown("inbox_server/user"));
        window.choose("outgoing_kind", "SMTP server");
        EXPECT_FALSE(window.is_shown("sendmail_program"));
        EXPECT_EQ(window.control<QSpinBox>("outgoing_server/port").text(), "standard (465)");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg(""), false);
    choose("MailProfiles");
}

TEST_F(MailProfiles, DeletingAsksFirst)
{
    profiles.save(stored("Work"));
    profiles.save(stored("Club"));
    keychain.entries = {{"work inbox ann on imap.example.org", "a"},
                        {"club inbox ann on imap.example.org", "b"}};
    const QString question =
        "Are you sure you want to delete the mail profile 'Club' and its passwords?";
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.select(1);
        EXPECT_EQ(window.text("name"), "Club");
        window.click("delete_profile");
        EXPECT_EQ(window.names(), (QStringList{"Work", "Club"}));
        window.click("delete_profile");
        EXPECT_EQ(window.names(), QStringList{"Work"});
        EXPECT_EQ(window.result(), "Deleted.");
        EXPECT_EQ(window.text("name"), "");
        window.close();
    });
    boxes.expect_ok_cancel(question, false);
    boxes.expect_ok_cancel(question, true);
    choose("MailProfiles");
    EXPECT_FALSE(profiles.find("Club"));
    EXPECT_EQ(keychain.entries,
              (std::map<QString, QString>{{"work inbox ann on imap.example.org", "a"}}));
}

TEST_F(MailProfiles, DeletingSaysThatAKeychainMayKeepThePasswords)
{
    profiles.save(stored("Work"));
    keychain.answers = false;
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.click("delete_profile");
        EXPECT_EQ(window.names(), QStringList());
        EXPECT_EQ(window.result(), "Deleted. No keychain of the desktop answered: a password that "
                                   "it holds for the profile stays there.");
        window.close();
    });
    boxes.expect_ok_cancel(
        "Are you sure you want to delete the mail profile 'Work' and its passwords?", true);
    choose("MailProfiles");
}

TEST_F(MailProfiles, AProfileThatHasGoneFromTheFileMeanwhileIsToldOf)
{
    profiles.save(stored("Work"));
    profiles.save(stored("Club"));
    boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        profiles.remove(stored("Club"));
        window.type("sender_name", "Saved");
        window.select(1); // Yes
        EXPECT_EQ(window.names(), QStringList{"Work"});
        EXPECT_EQ(window.text("name"), "");
        EXPECT_EQ(window.result(),
                  "The mail profile 'Club' is no longer in the file as it was read.");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg("Work"), true);
    choose("MailProfiles");
    EXPECT_EQ(profiles.find("Work")->profile.sender_name, "Saved");
}

TEST_F(MailProfiles, AControlCharacterIsNotSaved)
{
    open([](const ProfilesWindow &window) {
        window.type("name", "Work");
        window.choose("inbox_kind", "IMAP server");
        window.control<QLineEdit>("inbox_server/user").setText("an\x01n");
        window.click("save_profile");
        EXPECT_EQ(window.result(), "The mail profile cannot be saved: 'inbox user' holds a control "
                                   "character");
        window.type("inbox_server/user", "ann");
        window.click("save_profile");
        EXPECT_TRUE(window.result().startsWith("Saved."));
        window.close();
    });
}

TEST_F(MailProfiles, ChangesAreAskedAboutBeforeTheyAreLeft)
{
    profiles.save(stored("Work"));
    profiles.save(stored("Club"));
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("sender_name", "Saved");
        window.select(1); // Yes
        EXPECT_EQ(window.text("name"), "Club");
        window.type("sender_name", "Dropped");
        window.click("new_profile"); // No
        EXPECT_EQ(window.text("name"), "");
        window.type("name", "WORK");              // which is taken: it cannot be saved
        QTest::keyClick(&dialog, Qt::Key_Escape); // Yes
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(window.result(), "There is already a mail profile named 'Work'");
        QTest::keyClick(&dialog, Qt::Key_Escape); // No
        EXPECT_FALSE(dialog.isVisible());
    });
    boxes.expect_yes_no(question_about_changes.arg("Work"), true);
    boxes.expect_yes_no(question_about_changes.arg("Club"), false);
    boxes.expect_yes_no(question_about_changes.arg("WORK"), true);
    boxes.expect_yes_no(question_about_changes.arg("WORK"), false);
    choose("MailProfiles");
    EXPECT_EQ(profiles.find("Work")->profile.sender_name, "Saved");
    EXPECT_EQ(profiles.find("Club")->profile.sender_name, "");
}

TEST_F(MailProfiles, AnIncompleteProfileIsSavedAndSaidToBeSo)
{
    open([](const ProfilesWindow &window) {
        window.click("save_profile");
        EXPECT_EQ(window.result(), "A mail profile needs a name");
        window.type("name", "Half");
        window.choose("inbox_kind", "POP3 server");
        window.choose("outgoing_kind", "SMTP server");
        window.click("save_profile");
        EXPECT_EQ(window.result(), "Saved. It cannot read yet: it names no POP3 server. It cannot "
                                   "send yet: it names no SMTP server.");
        window.close();
    });
    EXPECT_TRUE(profiles.find("half"));
}

TEST_F(MailProfiles, ADamagedEntryIsShownAndSavingMendsIt)
{
    put_file(home.file("config/Pendral/profiles.ini"),
             "stray\n[profile]\nname=Work\ninbox port=x\n");
    open([](const ProfilesWindow &window) {
        EXPECT_EQ(window.names(), QStringList{"Work (damaged)"});
        EXPECT_EQ(window.result(),
                  "In the file of the mail profiles: line 1 belongs to no mail profile.");
        window.click("new_profile");
        window.select(0);
        EXPECT_EQ(window.result(), "This profile is damaged: line 4: 'inbox port' is no number "
                                   "from 0 to 65535. Saving it writes what is shown here.");
        window.click("save_profile");
        EXPECT_EQ(window.names(), QStringList{"Work"});
        window.close();
    });
}

TEST_F(MailProfiles, AFileThatCannotBeReadOrWrittenIsTold)
{
    const QString path = home.file("config/Pendral/profiles.ini");
    QDir().mkpath(path);
    open([&path](const ProfilesWindow &window) {
        EXPECT_EQ(window.result(), "The mail profiles cannot be read: '" + path + "' is no file");
        window.type("name", "Work");
        window.click("save_profile");
        EXPECT_EQ(window.result(), "The mail profiles cannot be read: '" + path + "' is no file");
        window.type("name", "");
        window.close();
    });
}

TEST_F(MailProfiles, TheTabKeyGoesThroughTheFieldsInTheirOrder)
{
    profiles.save(stored("Work"));
    open([](const ProfilesWindow &window) {
        const QStringList order = {
            "profiles",       "new_profile",  "delete_profile", "name",     "sender_name",
            "sender_address", "find_servers", "inbox_kind",     "host",     "port",
            "security",       "sign_in",      "user",           "password", "mailbox",
            "outgoing_kind",  "host",         "port",           "security", "sign_in",
            "user",           "password"};
        window.control<QListWidget>("profiles").setFocus();
        QStringList met;
        for (int i = 0; i < order.size(); ++i) {
            const QWidget *focused = window.dialog().focusWidget();
            while (focused->objectName().startsWith("qt_"))
                focused = focused->parentWidget();
            met += focused->objectName();
            QTest::keyClick(window.dialog().focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(met, order);
        window.close();
    });
}

TEST_F(MailProfiles, TheWindowOpensAgainWithWhatTheFileHolds)
{
    open([](const ProfilesWindow &window) {
        EXPECT_EQ(window.names(), QStringList());
        window.close();
    });
    profiles.save(stored("Work"));
    open([](const ProfilesWindow &window) {
        EXPECT_EQ(window.names(), QStringList{"Work"});
        EXPECT_EQ(window.text("inbox_server/host"), "imap.example.org");
        window.close();
    });
}
} // namespace
