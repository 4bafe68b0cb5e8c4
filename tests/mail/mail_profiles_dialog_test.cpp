// "Mail Profiles" in the menu "Tools", with real clicks; the servers alone are the test's own.
#include "mail/known_providers.h"
#include "mail/sign_in_refused.h"
#include "tests/mail/mail_texts.h"
#include "tests/mail/servers/stub_server.h"
#include "tests/support/program_window.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

namespace
{
/// The open window, as a person uses it. A field of a server is named "inbox_server/host".
class ProfilesWindow
{
public:
    explicit ProfilesWindow(QDialog &dialog) : dialog_(dialog)
    {
        dialog.activateWindow(); // only in an active window does a field notice that it is left
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &dialog; }));
    }

    template <typename Control>
    Control &control(const QString &name) const
    {
        QWidget *within = &dialog_;
        const QStringList path = name.split('/');
        for (const QString &part : path.mid(0, path.size() - 1))
            within = within->findChild<QWidget *>(part);
        auto *found = within->findChild<Control *>(path.last());
        if (found == nullptr)
            throw std::runtime_error("there is no control " + name.toStdString());
        return *found;
    }
    void click(const QString &name) const
    {
        auto &button = control<QPushButton>(name);
        ASSERT_TRUE(button.isEnabled() && button.isVisible()) << name.toStdString();
        QTest::mouseClick(&button, Qt::LeftButton);
    }
    void type(const QString &name, const QString &typed) const
    {
        auto &line = control<QLineEdit>(name);
        ASSERT_TRUE(line.isVisible()) << name.toStdString();
        line.setFocus();
        QTest::keyClick(&line, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&line, Qt::Key_Delete);
        QTest::keyClicks(&line, typed);
    }
    /// Leaves the field, as the Tab key does.
    void leave(const QString &name) const
    {
        QTest::keyClick(&control<QLineEdit>(name), Qt::Key_Tab);
    }
    void choose(const QString &name, const QString &item) const
    {
        auto &box = control<QComboBox>(name);
        ASSERT_GE(box.findText(item), 0) << item.toStdString();
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Home);
        for (int i = 0; i < box.findText(item); ++i)
            QTest::keyClick(&box, Qt::Key_Down);
    }
    void select(int row) const
    {
        auto &list = control<QListWidget>("profiles");
        const QRect place = list.visualItemRect(list.item(row));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place.center());
    }
    QString text(const QString &name) const { return control<QLineEdit>(name).text(); }
    QString chosen(const QString &name) const { return control<QComboBox>(name).currentText(); }
    QString result() const { return control<QLabel>("result").text(); }
    bool is_shown(const QString &name) const { return control<QWidget>(name).isVisible(); }
    QStringList names() const
    {
        QStringList names;
        const auto &list = control<QListWidget>("profiles");
        for (int row = 0; row < list.count(); ++row)
            names += list.item(row)->text();
        return names;
    }
    void close() const { click("close_window"); }
    QDialog &dialog() const { return dialog_; }

private:
    QDialog &dialog_;
};

/// An inbox that takes one password.
class GuardedInbox : public Inbox
{
public:
    explicit GuardedInbox(std::function<Credentials()> credentials)
        : credentials_(std::move(credentials))
    {
    }
    void fetch() override
    {
        if (credentials_().secret != "right")
            throw SignInRefused(32000, "imap.example.org: logging in: <b>no</b>");
    }
    int count() const override { return 1234; }
    MessageFields read(int) override { return {}; }

private:
    std::function<Credentials()> credentials_;
};

class MailProfiles : public ProgramWindow
{
protected:
    MailProfiles()
    {
        qputenv("USER", "no-such-user-here");
        profile_desk.open_inbox = [](const MailProfile &profile,
                                     std::function<Credentials()> credentials) {
            return server_for(profile, MailUse::Reading) == nullptr
                       ? inbox_opener({})(profile, credentials)
                       : std::make_unique<GuardedInbox>(credentials);
        };
        profile_desk.try_way_out = [](const MailProfile &profile,
                                      const std::function<Credentials()> &credentials) {
            return profile.outgoing_server.host + " took " + credentials().user;
        };
    }
    void open(std::function<void(ProfilesWindow)> use)
    {
        boxes.expect_dialog("Mail Profiles",
                            [use](QDialog &dialog) { use(ProfilesWindow(dialog)); });
        choose("MailProfiles");
    }
    static MailProfile stored(const QString &name)
    {
        MailProfile profile;
        profile.name = name;
        profile.sender_address = "ann@example.org";
        profile.inbox = InboxKind::Imap;
        profile.inbox_server.host = "imap.example.org";
        profile.inbox_server.user = "ann";
        profile.outgoing = OutgoingKind::Smtp;
        profile.outgoing_server.host = "smtp.example.org";
        profile.outgoing_server.user = "ann";
        return profile;
    }
    /// The name service answers with this host, when answer() is called.
    void name_service_answers(const QString &host)
    {
        profile_desk.find_services = [this, host](const QStringList &names, QObject &asker,
                                                  const ServicesFound &found) {
            asked += names;
            asker_ = &asker;
            answer_ = [host, found] {
                found({{"_imaps._tcp.example.org", host, 993},
                       {"_submissions._tcp.example.org", host, 465}});
            };
        };
    }
    void answer()
    {
        if (asker_)
            answer_();
    }
    QStringList asked;
    const QString question_about_changes =
        "The mail profile '%1' has changes that are not saved. Save them?";

private:
    QPointer<QObject> asker_;
    std::function<void()> answer_;
};

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

TEST_F(MailProfiles, TestSaysWhatItFound)
{
    profiles.save(stored("Work"));
    keychain.entries = {{"work inbox ann on imap.example.org", "right"},
                        {"work sending ann on smtp.example.org", "x"}};
    open([](const ProfilesWindow &window) {
        window.click("test_profile");
        EXPECT_EQ(window.result(), "Reading: 1,234 messages in the inbox.\n"
                                   "Sending: smtp.example.org took ann");
        window.close();
    });
}

TEST_F(MailProfiles, NothingElseBeginsWhileServersAreTried)
{
    bool is_waiting = false;
    QStringList met;
    profile_desk.run = [&is_waiting](const std::function<void()> &operation) {
        is_waiting = true;
        operation();
        is_waiting = false;
    };
    profile_desk.try_way_out = [&](const MailProfile &, const std::function<Credentials()> &) {
        met += is_waiting ? "guarded" : "unguarded";
        return QString();
    };
    profiles.save(stored("Work"));
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.click("test_profile");
        window.close();
    });
    choose("MailProfiles");
    EXPECT_EQ(met, QStringList{"guarded"});
}

TEST_F(MailProfiles, TestSaysExactlyWhatFailed)
{
    profiles.save(stored("Work"));
    keychain.entries = {{"work inbox ann on imap.example.org", "wrong"}};
    open([](const ProfilesWindow &window) {
        window.click("test_profile");
        EXPECT_EQ(window.result(),
                  "Reading failed: imap.example.org: logging in: <b>no</b>\n"
                  "Sending failed: The mail profile 'Work' needs the password of ann on "
                  "smtp.example.org (SMTP), and the desktop's keychain holds none.");
        EXPECT_EQ(window.control<QLabel>("result").textFormat(), Qt::PlainText);
        window.choose("inbox_kind", "Maildir folder");
        window.choose("outgoing_kind", "The sendmail program of this machine");
        window.click("test_profile");
        EXPECT_TRUE(window.result().startsWith(
            "Reading failed: the profile is incomplete: it names no Maildir folder.\nSending: "));
        window.choose("inbox_kind", "Local inbox of this machine");
        window.click("test_profile");
        EXPECT_TRUE(
            window.result().startsWith("Reading failed: no local inbox was found. Looked for: "));
        window.choose("inbox_kind", "IMAP server");
        window.choose("outgoing_kind", "SMTP server");
        window.close();
    });
}

TEST_F(MailProfiles, TestTakesATypedPasswordBeforeTheStoredOne)
{
    profiles.save(stored("Work"));
    keychain.entries = {{"work inbox ann on imap.example.org", "old"},
                        {"work sending ann on smtp.example.org", "x"}};
    boxes.expect_dialog("Mail Profiles", [](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("inbox_server/password", "right");
        window.click("test_profile");
        EXPECT_TRUE(window.result().startsWith("Reading: 1,234 messages"));
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg("Work"), false);
    choose("MailProfiles");
    EXPECT_EQ(keychain.entries["work inbox ann on imap.example.org"], "old");
}

// Takes whatever signs on to it.
void take_everybody(StubLine &line)
{
    line.say("* OK ready\r\n");
    while (line.is_open()) {
        const QByteArray command = line.hear();
        const QByteArray tag = command.left(command.indexOf(' '));
        if (command.isEmpty())
            return;
        if (command.contains(" EXAMINE"))
            line.say("* 0 EXISTS\r\n");
        line.say(tag + " OK\r\n");
    }
}

TEST_F(MailProfiles, APasswordGoesToNoOtherServerThanItsOwn)
{
    const StubServer server(take_everybody);
    profile_desk.open_inbox = inbox_opener({std::chrono::seconds(5), [] {}, {}});
    MailProfile profile = stored("Work");
    profile.inbox_server.host = "localhost";
    profile.inbox_server.port = server.port();
    profile.inbox_server.security = LineSecurity::Plain;
    profile.outgoing = OutgoingKind::Sendmail;
    profiles.save(profile);
    keychain.entries = {{"work inbox ann on localhost", "stored-s3cret"}};
    log_on_answers.passwords = {{"typed", false}};
    boxes.expect_dialog("Mail Profiles", [&](QDialog &dialog) {
        const ProfilesWindow window(dialog);
        window.type("inbox_server/host", "127.0.0.1");
        window.click("test_profile");
        EXPECT_TRUE(window.result().startsWith("Reading: 0 messages"))
            << window.result().toStdString();
        window.type("inbox_server/host", "localhost");
        window.type("inbox_server/user", "eve");
        window.click("test_profile");
        EXPECT_TRUE(window.result().startsWith("Reading failed: The mail profile 'Work' needs the "
                                               "password of eve on localhost (IMAP), and "))
            << window.result().toStdString();
        window.type("inbox_server/user", "ann");
        window.click("new_profile");
        window.type("name", "Work"); // not that one
        window.choose("inbox_kind", "IMAP server");
        window.type("inbox_server/host", "127.0.0.2");
        window.type("inbox_server/user", "ann");
        window.click("test_profile");
        EXPECT_TRUE(window.result().startsWith("Reading failed: "))
            << window.result().toStdString();
        window.close();
    });
    boxes.expect_yes_no(question_about_changes.arg("Work"), false);
    choose("MailProfiles");
    EXPECT_EQ(log_on_answers.reasons,
              (QStringList{"The mail profile 'Work' needs the password of ann on 127.0.0.1 (IMAP), "
                           "and the desktop's keychain holds none.",
                           "The mail profile 'Work' needs the password of eve on localhost (IMAP), "
                           "and the desktop's keychain holds none.",
                           "The mail profile 'Work' needs the password of ann on 127.0.0.2 (IMAP), "
                           "and the desktop's keychain holds none."}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !server.heard().isEmpty(); }));
    EXPECT_EQ(server.lines(), 1);
    EXPECT_FALSE(server.heard().join().contains("stored-s3cret"));
    EXPECT_TRUE(server.heard().join().contains("typed"));
}

TEST_F(MailProfiles, APasswordIsForgottenWithTheServerThatItWasFor)
{
    profiles.save(stored("Work"));
    keychain.entries = {{"work inbox ann on imap.example.org", "a"},
                        {"work sending ann on smtp.example.org", "b"}};
    open([](const ProfilesWindow &window) {
        window.type("name", "Club");
        window.type("inbox_server/host", "imap.evil.example");
        window.click("save_profile");
        EXPECT_EQ(window.result(), "Saved.");
        window.close();
    });
    EXPECT_EQ(keychain.entries,
              (std::map<QString, QString>{{"club sending ann on smtp.example.org", "b"}}));
    const MailProfile changed = profiles.find("club")->profile;
    EXPECT_THROW(accounts.credentials(changed, MailUse::Reading), RuntimeError);
    EXPECT_EQ(accounts.credentials(changed, MailUse::Sending).secret, "b");
}

TEST_F(MailProfiles, SavingSaysThatAKeychainMayKeepThePasswordOfAnotherServer)
{
    profiles.save(stored("Work"));
    keychain.answers = false;
    accounts.passwords().hold(password_key(stored("Work"), MailUse::Reading), "held");
    open([](const ProfilesWindow &window) {
        window.type("inbox_server/host", "IMAP.example.org"); // the same
        window.click("save_profile");
        EXPECT_EQ(window.result(), "Saved.");
        window.type("inbox_server/host", "imap.evil.example");
        window.click("save_profile");
        EXPECT_EQ(window.result(), "Saved. No keychain of the desktop answered: a password that it "
                                   "holds for the profile as it was stays there.");
        window.close();
    });
    EXPECT_THROW(accounts.credentials(profiles.find("Work")->profile, MailUse::Reading),
                 RuntimeError);
}

TEST_F(MailProfiles, TestReadsALocalInboxForReal)
{
    put_file(home.file("Maildir/new/1.a"), ::mail("Subject: x"));
    open([](const ProfilesWindow &window) {
        window.click("test_profile");
        EXPECT_EQ(window.result().section('\n', 0, 0), "Reading: 1 message in the inbox.");
        window.close();
    });
}

TEST_F(MailProfiles, ARenamedProfileKeepsItsPasswords)
{
    profiles.save(stored("Work"));
    keychain.entries = {{"work inbox ann on imap.example.org", "a"},
                        {"work sending ann on smtp.example.org", "b"}};
    open([](const ProfilesWindow &window) {
        window.type("name", "Club");
        window.click("save_profile");
        EXPECT_EQ(window.result(), "Saved.");
        EXPECT_EQ(window.names(), QStringList{"Club"});
        window.close();
    });
    EXPECT_EQ(keychain.entries,
              (std::map<QString, QString>{{"club inbox ann on imap.example.org", "a"},
                                          {"club sending ann on smtp.example.org", "b"}}));
    EXPECT_FALSE(profiles.find("Work"));
}

TEST_F(MailProfiles, WithoutAKeychainThePasswordHoldsForTheSession)
{
    profiles.save(stored("Work"));
    keychain.answers = false;
    open([](const ProfilesWindow &window) {
        window.type("inbox_server/password", "right");
        window.click("save_profile");
        EXPECT_EQ(window.result(), "Saved. No keychain of the desktop answered: the password is "
                                   "kept until the program ends.");
        window.close();
    });
    EXPECT_EQ(accounts.credentials(stored("Work"), MailUse::Reading).secret, "right");
    EXPECT_FALSE(content(home.file("config/Pendral/profiles.ini")).contains("right"));
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
