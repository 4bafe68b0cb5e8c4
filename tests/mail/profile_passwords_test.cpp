// "Test" of "Mail Profiles", and where its passwords go.
#include "tests/mail/profiles_room.h"
#include "tests/mail/servers/stub_server.h"

namespace
{
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
} // namespace
