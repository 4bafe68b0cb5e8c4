#include "mail/mail_accounts.h"
#include "platform/runtime_error.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/failure_text.h"
#include "tests/support/password_fakes.h"
#include "tests/support/private_home.h"

#include <QFile>
#include <gtest/gtest.h>

namespace
{
class Accounts : public testing::Test
{
protected:
    Accounts() { qputenv("USER", "no-such-user-here"); }

    MailProfile server_profile(const QString &name = "Work") const
    {
        MailProfile profile;
        profile.name = name;
        profile.inbox = InboxKind::Imap;
        profile.inbox_server.host = "imap.example.org";
        profile.inbox_server.user = "ann";
        profile.outgoing = OutgoingKind::Smtp;
        profile.outgoing_server.host = "smtp.example.org";
        profile.outgoing_server.user = "ann";
        return profile;
    }
    QString profile_failure(MailAccounts &of, const QString &name, MailUse use = MailUse::Reading)
    {
        return failure_text([&] { of.profile_for(name, use); });
    }

    PrivateHome home;
    ProfileFile file{home.file("profiles.ini")};
    FakeKeychain keychain;
    ScriptedLogOn dialog;
    MailAccounts accounts{file, keychain, &dialog};
    MailAccounts unattended{file, keychain, nullptr};
};

TEST_F(Accounts, AProfileIsFoundWithoutRegardToCaseAndAsksNothing)
{
    file.save(server_profile());
    EXPECT_EQ(accounts.profile_for("WORK", MailUse::Reading), server_profile());
    EXPECT_EQ(accounts.profile_for("work", MailUse::Sending), server_profile());
    EXPECT_EQ(dialog.reasons, QStringList());
    EXPECT_EQ(keychain.reads, 0);
}

TEST_F(Accounts, TheEmptyNameIsTheLocalInboxAndTheSendmailProgram)
{
    EXPECT_EQ(accounts.profile_for("", MailUse::Sending), MailProfile());
    EXPECT_EQ(profile_failure(accounts, "").left(33), "32000 No local inbox was found. L");
    put_file(home.file("Maildir/new/1.a"), mail("Subject: x"));
    EXPECT_EQ(accounts.profile_for("", MailUse::Reading), MailProfile());
}

TEST_F(Accounts, AnUnknownProfileIsAskedAbout)
{
    file.save(server_profile("Work"));
    file.save(server_profile("Club"));
    dialog.accounts = {{"Club", {}}};
    EXPECT_EQ(accounts.profile_for("Wrok", MailUse::Reading).name, "Club");
    EXPECT_EQ(dialog.reasons, QStringList{"There is no mail profile named 'Wrok'."});
    EXPECT_EQ(dialog.last_account.profiles, (QStringList{"Work", "Club"}));
    EXPECT_TRUE(dialog.last_account.takes_inbox);
}

TEST_F(Accounts, AnInboxMayBeTheAnswer)
{
    put_file(home.file("mbox"), "");
    dialog.accounts = {{{}, home.file("mbox")}};
    const MailProfile profile = accounts.profile_for("Gone", MailUse::Reading);
    EXPECT_EQ(profile.name, "Gone");
    EXPECT_EQ(profile.inbox, InboxKind::Mbox);
    EXPECT_EQ(profile.inbox_path, home.file("mbox"));
}

TEST_F(Accounts, NoInboxHelpsASessionThatSends)
{
    EXPECT_EQ(profile_failure(accounts, "Gone", MailUse::Sending),
              "32000 There is no mail profile named 'Gone'.");
    EXPECT_FALSE(dialog.last_account.takes_inbox);
}

TEST_F(Accounts, AnIncompleteProfileIsAskedAboutForWhatItLacksInThisUse)
{
    MailProfile profile = server_profile();
    profile.inbox_server.host.clear();
    file.save(profile);
    EXPECT_EQ(profile_failure(accounts, "work"),
              "32000 The mail profile 'work' is incomplete: it names no IMAP server.");
    EXPECT_EQ(accounts.profile_for("work", MailUse::Sending), profile);
    EXPECT_EQ(dialog.reasons.size(), 1);
}

TEST_F(Accounts, AnswersThatDoNotHelpAreAskedAboutAgain)
{
    MailProfile profile = server_profile("Half");
    profile.inbox_server.user.clear();
    file.save(profile);
    dialog.accounts = {{"Half", {}}, {"Half", {}}};
    EXPECT_EQ(profile_failure(accounts, "Gone"),
              "32000 The mail profile 'Half' is incomplete: it names no user for the IMAP server.");
    EXPECT_EQ(dialog.reasons.size(), 3);
}

TEST_F(Accounts, ADamagedProfileIsNotGuessedAt)
{
    put_file(home.file("profiles.ini"), "[profile]\nname=Work\ninbox=post\n");
    EXPECT_EQ(profile_failure(accounts, "Work"),
              "32000 The mail profile 'Work' is damaged: line 3: 'inbox' cannot be 'post'.");
    EXPECT_EQ(dialog.last_account.profiles, QStringList());
}

TEST_F(Accounts, AFileThatCannotBeReadOffersNoProfileAndIsToldWhenOneIsNeeded)
{
    put_file(home.file("profiles.ini/x"), ""); // a folder in its place
    EXPECT_EQ(accounts.sound_profiles(), QStringList());
    EXPECT_EQ(profile_failure(accounts, "Work"), "75 The mail profiles cannot be read: '" +
                                                     home.file("profiles.ini") + "' is no file");
    EXPECT_EQ(profile_failure(accounts, "").left(33), "32000 No local inbox was found. L");
}

TEST_F(Accounts, AFolderThatIsNoMaildirIsMissing)
{
    MailProfile profile;
    profile.name = "Local";
    profile.inbox = InboxKind::Maildir;
    profile.inbox_path = home.file("mail");
    file.save(profile);
    put_file(home.file("mail"), ""); // a file, which would be an mbox
    EXPECT_EQ(profile_failure(accounts, "Local"),
              "32000 The mail profile 'Local' cannot be read. There is no Maildir folder '" +
                  home.file("mail") + "'.");
    EXPECT_EQ(accounts.profile_for("Local", MailUse::Sending), profile);
}

TEST_F(Accounts, AnUnattendedRunGetsAPlainError)
{
    EXPECT_EQ(profile_failure(unattended, "Gone"), "32000 There is no mail profile named 'Gone'.");
    EXPECT_EQ(failure_text([&] { unattended.credentials(server_profile(), MailUse::Reading); }),
              "32000 The mail profile 'Work' needs the password of ann on imap.example.org (IMAP), "
              "and the desktop's keychain holds none.");
    EXPECT_EQ(dialog.reasons, QStringList());
}

TEST_F(Accounts, APasswordComesFromTheKeychain)
{
    keychain.entries["work inbox ann on imap.example.org"] = "stored";
    const Credentials found = accounts.credentials(server_profile(), MailUse::Reading);
    EXPECT_EQ(found.kind, SignInKind::Password);
    EXPECT_EQ(found.user, "ann");
    EXPECT_EQ(found.secret, "stored");
    EXPECT_EQ(dialog.reasons, QStringList());
}

TEST_F(Accounts, APasswordIsAskedForOnceASessionAndTheQuestionSaysWhy)
{
    keychain.answers = false;
    dialog.passwords = {{"typed", false}};
    EXPECT_EQ(accounts.credentials(server_profile(), MailUse::Sending).secret, "typed");
    EXPECT_EQ(accounts.credentials(server_profile(), MailUse::Sending).secret, "typed");
    EXPECT_EQ(dialog.reasons,
              QStringList{"The mail profile 'Work' needs the password of ann on smtp.example.org "
                          "(SMTP), and no keychain of the desktop answered."});
    EXPECT_FALSE(dialog.last_password.can_remember);
    EXPECT_EQ(dialog.last_password.server, "ann on smtp.example.org");
}

TEST_F(Accounts, APasswordIsRememberedOnceTheServerHasTakenIt)
{
    dialog.passwords = {{"typed", true}};
    accounts.credentials(server_profile(), MailUse::Reading);
    EXPECT_TRUE(dialog.last_password.can_remember);
    EXPECT_TRUE(keychain.entries.empty());
    accounts.accepted(server_profile(), MailUse::Reading);
    EXPECT_EQ(keychain.entries["work inbox ann on imap.example.org"], "typed");
}

TEST_F(Accounts, ARefusedPasswordIsAskedForAgainAndNeverRemembered)
{
    dialog.passwords = {{"wrong", true}, {"right", false}};
    accounts.credentials(server_profile(), MailUse::Reading);
    EXPECT_TRUE(accounts.ask_again(server_profile(), MailUse::Reading, "no such user"));
    EXPECT_EQ(dialog.reasons.last(), "The server refused the password. It said: no such user");
    EXPECT_EQ(accounts.credentials(server_profile(), MailUse::Reading).secret, "right");
    accounts.accepted(server_profile(), MailUse::Reading);
    EXPECT_TRUE(keychain.entries.empty());
    EXPECT_FALSE(accounts.ask_again(server_profile(), MailUse::Reading, "no"));
    EXPECT_FALSE(unattended.ask_again(server_profile(), MailUse::Reading, "no"));
}

TEST_F(Accounts, ARefusedPasswordStaysWhenNobodyAnswers)
{
    keychain.answers = false;
    accounts.passwords().hold(password_key(server_profile(), MailUse::Reading), "typed");
    unattended.passwords().hold(password_key(server_profile(), MailUse::Reading), "typed");
    EXPECT_FALSE(unattended.ask_again(server_profile(), MailUse::Reading, "try later"));
    EXPECT_EQ(unattended.credentials(server_profile(), MailUse::Reading).secret, "typed");
    EXPECT_FALSE(accounts.ask_again(server_profile(), MailUse::Reading, "try later"));
    EXPECT_FALSE(dialog.last_password.can_remember);
    EXPECT_EQ(accounts.credentials(server_profile(), MailUse::Reading).secret, "typed");
}

TEST_F(Accounts, ATokenIsPrintedAnewEachTime)
{
    MailProfile profile = server_profile();
    profile.inbox_server.sign_in = SignInKind::Token;
    profile.inbox_server.token_command = "/bin/echo token";
    const Credentials found = accounts.credentials(profile, MailUse::Reading);
    EXPECT_EQ(found.kind, SignInKind::Token);
    EXPECT_EQ(found.secret, "token");
    EXPECT_FALSE(accounts.ask_again(profile, MailUse::Reading, "expired"));
    EXPECT_EQ(keychain.reads, 0);
}

TEST_F(Accounts, AServerThatAsksForNothingGetsNothing)
{
    MailProfile profile = server_profile();
    profile.outgoing_server.sign_in = SignInKind::None;
    EXPECT_EQ(accounts.credentials(profile, MailUse::Sending).kind, SignInKind::None);
    EXPECT_EQ(accounts.credentials(MailProfile(), MailUse::Reading).kind, SignInKind::None);
    EXPECT_EQ(keychain.reads, 0);
}
} // namespace
