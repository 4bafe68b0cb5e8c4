// The servers that "Mail Profiles" proposes.
#include "mail/known_providers.h"
#include "tests/mail/profiles_room.h"

namespace
{
TEST_F(MailProfiles, AKnownProviderIsProposedWhenItsAddressIsTyped)
{
    profile_desk.find_services = [](const QStringList &, QObject &, const ServicesFound &) {
        ADD_FAILURE() << "the program knows the provider";
    };
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("name", "Post");
        window.type("sender_address", "ann@gmx.de");
        window.leave("sender_address");
        EXPECT_EQ(window.chosen("inbox_kind"), "IMAP server");
        EXPECT_EQ(window.text("inbox_server/host"), "imap.gmx.net");
        EXPECT_EQ(window.text("inbox_server/user"), "ann@gmx.de");
        EXPECT_EQ(window.chosen("outgoing_kind"), "SMTP server");
        EXPECT_EQ(window.text("outgoing_server/host"), "mail.gmx.net");
        EXPECT_EQ(window.result(), "These are the servers of a provider that the program knows. " +
                                       known_servers("ann@gmx.de")->note);
        window.choose("inbox_kind", "POP3 server");
        EXPECT_EQ(window.text("inbox_server/host"), "pop.gmx.net");
        window.click("find_servers");
        EXPECT_EQ(window.chosen("inbox_kind"), "POP3 server");
        window.type("inbox_server/host", "my.own.example.org");
        window.type("sender_address", "ann@gmail.com");
        window.leave("sender_address");
        EXPECT_EQ(window.text("inbox_server/host"), "my.own.example.org");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg("Post"), false);
    choose("MailProfiles");
    EXPECT_TRUE(profiles.load().profiles.empty());
}

TEST_F(MailProfiles, TheNameServiceIsAskedForOtherAddresses)
{
    name_service_answers("mail.example.org");
    boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.click("find_servers");
        EXPECT_EQ(window.result(), "Type your e-mail address first.");
        window.type("sender_address", "ann@example.org");
        EXPECT_EQ(asked, QStringList());
        window.leave("sender_address");
        EXPECT_EQ(asked, service_names("example.org"));
        EXPECT_EQ(window.result(), "Asking the name service for the mail servers of example.org …");
        window.type("name", "Work"); // goes on meanwhile
        answer();
        EXPECT_EQ(window.text("name"), "Work");
        EXPECT_EQ(window.chosen("inbox_kind"), "IMAP server");
        EXPECT_EQ(window.text("inbox_server/host"), "mail.example.org");
        EXPECT_EQ(window.text("outgoing_server/host"), "mail.example.org");
        EXPECT_EQ(window.result(),
                  "These are the servers that the name service names for example.org.");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg("Work"), false);
    choose("MailProfiles");
}

TEST_F(MailProfiles, FindServersAsksTheNameServiceAnew)
{
    name_service_answers("mail.example.org");
    profiles.save(stored("Work"));
    boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.leave("sender_address"); // nothing is changed by passing through
        EXPECT_EQ(asked, QStringList());
        window.click("find_servers");
        answer();
        EXPECT_EQ(window.text("inbox_server/host"), "mail.example.org");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg("Work"), false);
    choose("MailProfiles");
}

TEST_F(MailProfiles, WhatWasChangedWhileServersAreLookedForStays)
{
    name_service_answers("mail.example.org");
    boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("sender_address", "ann@example.org");
        window.leave("sender_address");
        window.choose("inbox_kind", "Mailbox file (mbox)");
        answer();
        EXPECT_EQ(window.chosen("inbox_kind"), "Mailbox file (mbox)");
        EXPECT_EQ(window.chosen("outgoing_kind"), "The sendmail program of this machine");
        EXPECT_EQ(window.result(), "What was typed meanwhile stays. Find Servers asks again.");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg(""), false);
    choose("MailProfiles");
}

TEST_F(MailProfiles, APasswordThatIsTypedWhileServersAreLookedForStays)
{
    name_service_answers("mail.example.org");
    boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.choose("inbox_kind", "IMAP server");
        window.type("sender_address", "ann@example.org");
        window.leave("sender_address");
        window.type("inbox_server/password", "s3cret");
        answer();
        EXPECT_EQ(window.text("inbox_server/password"), "s3cret");
        EXPECT_EQ(window.result(), "What was typed meanwhile stays. Find Servers asks again.");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg(""), false);
    choose("MailProfiles");
}

TEST_F(MailProfiles, NothingIsAskedOfTheNameServiceOnTheWayOut)
{
    name_service_answers("mail.example.org");
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("sender_address", "ann@example.org");
        QTest::keyClick(&window.control<QLineEdit>("sender_address"), Qt::Key_Escape);
    });
    boxes.expect_yes_no(question_about_changes.arg(""), false);
    choose("MailProfiles");
    EXPECT_EQ(asked, QStringList());
}

TEST_F(MailProfiles, NoBoxComesUpBeneathTypingHands)
{
    name_service_answers("mail.evil.example");
    boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("sender_address", "ann@example.org");
        window.click("find_servers");
        window.type("sender_name", "Ann");
        answer();
        EXPECT_EQ(window.result(), "The name service names servers outside example.org: "
                                   "mail.evil.example. Find Servers asks whether to use them.");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg(""), false);
    choose("MailProfiles");
}

TEST_F(MailProfiles, AnAnswerThatComesAfterTheNextCommandIsDropped)
{
    name_service_answers("mail.evil.example");
    boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("sender_address", "ann@example.org");
        window.click("find_servers");
        window.click("test_profile");
        const QString said = window.result();
        answer();
        EXPECT_EQ(window.result(), said);
        window.click("find_servers");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg(""), false);
    choose("MailProfiles");
    answer();
}

TEST_F(MailProfiles, ServersOfAnotherDomainAreAskedAbout)
{
    name_service_answers("mail.evil.example");
    boxes.expect_dialog("Mail Profiles", [this](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("sender_address", "ann@example.org");
        window.leave("sender_address");
        answer();
        EXPECT_EQ(window.result(), "The name service names servers outside example.org: "
                                   "mail.evil.example. Find Servers asks whether to use them.");
        window.click("find_servers");
        answer();
        EXPECT_EQ(window.chosen("inbox_kind"), "Local inbox of this machine");
        EXPECT_EQ(window.result(), "");
        window.click("find_servers");
        answer();
        EXPECT_EQ(window.text("inbox_server/host"), "mail.evil.example");
        window.close();
    });
    const QString question = "The name service names servers outside example.org:\n\n"
                             "mail.evil.example\n\nThey would be given your user name and "
                             "password. Do you want to use them?";
    boxes.expect_yes_no(question, false);
    boxes.expect_yes_no(question, true);
    boxes.expect_yes_no(question_about_changes.arg(""), false);
    choose("MailProfiles");
}

TEST_F(MailProfiles, AGuessIsCalledOne)
{
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("sender_address", "ann@example.org");
        window.leave("sender_address");
        EXPECT_EQ(window.result(), "The name service names no mail servers of example.org. Find "
                                   "Servers proposes the usual names.");
        window.click("find_servers");
        EXPECT_EQ(window.text("inbox_server/host"), "imap.example.org");
        EXPECT_EQ(window.result(),
                  "The name service names no mail servers of example.org. These are the usual "
                  "names, a guess: Test says whether they are right.");
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg(""), false);
    choose("MailProfiles");
}
} // namespace
