#include "mail/profile_file.h"
#include "mail/profile_rules.h"
#include "platform/runtime_error.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/failure_text.h"
#include "tests/support/private_home.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace
{
MailProfile imap_profile(const QString &name = "Work")
{
    MailProfile profile;
    profile.name = name;
    profile.sender_name = "Ann; the <first> of \"us\"";
    profile.sender_address = "ann@example.org";
    profile.inbox = InboxKind::Imap;
    profile.inbox_path = "Lists/Garden";
    profile.inbox_server = {"imap.example.org", 10993, LineSecurity::StartTls,
                            SignInKind::Token,  "ann", "/bin/token --user \"a b\" 100%"};
    profile.outgoing = OutgoingKind::Smtp;
    profile.outgoing_server = {"::1", 25, LineSecurity::Plain, SignInKind::None, "", ""};
    profile.sendmail_program = "/opt/my sendmail";
    return profile;
}

class Profiles : public testing::Test
{
protected:
    QByteArray content() const
    {
        QFile stored(path());
        return stored.open(QIODevice::ReadOnly) ? stored.readAll() : QByteArray("(none)");
    }
    QString path() const { return home.file("config/Pendral/profiles.ini"); }
    void write(const QByteArray &bytes) const { put_file(path(), bytes); }

    PrivateHome home;
    ProfileFile file{home.file("config/Pendral/profiles.ini")};
};

TEST_F(Profiles, AnAbsentFileHoldsNone)
{
    EXPECT_TRUE(file.load().profiles.empty());
    EXPECT_EQ(file.find("Work"), std::nullopt);
    EXPECT_EQ(content(), "(none)");
}

TEST_F(Profiles, EveryFieldComesBack)
{
    file.save(imap_profile());
    const StoredProfiles all = file.load();
    ASSERT_EQ(all.profiles.size(), 1U);
    EXPECT_EQ(all.profiles[0].profile, imap_profile());
    EXPECT_EQ(all.profiles[0].damages, QStringList());
    EXPECT_EQ(all.damages, QStringList());
}

TEST_F(Profiles, ReadsLikeWhatAPersonWouldWrite)
{
    MailProfile profile;
    profile.name = "Home";
    profile.inbox = InboxKind::Pop3;
    profile.inbox_server.host = "pop.example.org";
    profile.inbox_server.user = "ann";
    file.save(profile);
    EXPECT_EQ(content(),
              "[profile]\nname=Home\ninbox=pop3\ninbox host=pop.example.org\ninbox user=ann\n");
}

TEST_F(Profiles, IsReadableByTheOwnerAlone)
{
    file.save(imap_profile());
    EXPECT_EQ(QFileInfo(path()).permissions() &
                  (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
}

TEST_F(Profiles, NamesMayBeAnythingAndAreMatchedWithoutRegardToCase)
{
    const QStringList names = {"[profile]",    "a=b",  " blanks ", "#x", u"Ärger ☂"_qs,
                               "two\r\nlines", "100%", "..\\..",   "a/b"};
    for (const QString &name : names)
        file.save(imap_profile(name));
    for (const QString &name : names) {
        const auto found = file.find(name.toUpper());
        ASSERT_TRUE(found) << name.toStdString();
        EXPECT_EQ(found->profile, imap_profile(name));
    }
}

TEST_F(Profiles, ANameIsTakenOnce)
{
    file.save(imap_profile("Work"));
    EXPECT_EQ(failure_text([&] { file.save(imap_profile("WORK")); }),
              "5 There is already a mail profile named 'Work'");
    EXPECT_EQ(failure_text([&] { file.save(imap_profile("")); }), "5 A mail profile needs a name");
    file.save(imap_profile("work"), imap_profile("Work")); // its own name in other letters
    EXPECT_EQ(file.load().profiles.size(), 1U);
    EXPECT_EQ(file.find("Work")->profile.name, "work");
}

TEST_F(Profiles, ChangingOneLeavesTheOthersAndEveryOtherLine)
{
    write("# mine\n\n[profile]\nname=A\n# of A\n[profile]\nname=B\nport=x\n[else]\nx=1\n");
    MailProfile changed = file.find("A")->profile;
    changed.sender_name = "Ann";
    file.save(changed, file.find("A")->profile);
    EXPECT_EQ(content(), "# mine\n\n[profile]\nname=A\nsender name=Ann\n# of A\n"
                         "[profile]\nname=B\nport=x\n[else]\nx=1\n");
    file.remove(changed);
    EXPECT_EQ(content(), "# mine\n\n[profile]\nname=B\nport=x\n[else]\nx=1\n");
}

TEST_F(Profiles, WhatHasChangedMeanwhileIsNotOverwritten)
{
    file.save(imap_profile());
    MailProfile other = imap_profile();
    other.sender_name = "Another program";
    file.save(other, imap_profile());
    EXPECT_EQ(failure_text([&] { file.save(imap_profile("New"), imap_profile()); }),
              "5 The mail profile 'Work' is no longer in the file as it was read");
    EXPECT_EQ(failure_text([&] { file.remove(imap_profile()); }),
              "5 The mail profile 'Work' is no longer in the file as it was read");
    EXPECT_EQ(file.find("Work")->profile, other);
}

TEST_F(Profiles, ADamagedEntryIsToldWithItsLineAndKept)
{
    const QByteArray bytes = "stray\n"
                             "[profile]\n"
                             "name=Work\n"
                             "inbox=carrier pigeon\n"
                             "inbox host=imap.example.org\n"
                             "inbox port=70000\n"
                             "inbox hosst=x\n"
                             "nothing\n"
                             "inbox user=a%0Ab\n"
                             "[profile]\n"
                             "name=WORK\n"
                             "[profile]\n"
                             "inbox=imap\n";
    write(bytes);
    const StoredProfiles all = file.load();
    EXPECT_EQ(all.damages, QStringList{"line 1 belongs to no mail profile"});
    ASSERT_EQ(all.profiles.size(), 3U);
    EXPECT_EQ(all.profiles[0].damages,
              (QStringList{"line 4: 'inbox' cannot be 'carrier pigeon'",
                           "line 6: 'inbox port' is no number from 0 to 65535",
                           "line 7: 'inbox hosst' is no part of a mail profile",
                           "line 8: this is no 'key=value'",
                           "line 9: 'inbox user' holds a control character"}));
    EXPECT_EQ(all.profiles[0].profile.inbox_server.host, "imap.example.org");
    EXPECT_EQ(all.profiles[1].damages, QStringList{"line 10: another profile has the same name"});
    EXPECT_EQ(all.profiles[2].damages, QStringList{"line 13: the profile has no name"});
    file.save(imap_profile("New"));
    EXPECT_EQ(content().left(bytes.size()), bytes);
}

TEST_F(Profiles, WhatWouldReadBackAsDamageIsNotSaved)
{
    file.save(imap_profile());
    const QByteArray before = content();
    MailProfile profile = imap_profile();
    profile.inbox_server.token_command = "/bin/token\x01";
    EXPECT_EQ(
        failure_text([&] { file.save(profile, imap_profile()); }),
        "5 The mail profile cannot be saved: 'inbox token command' holds a control character");
    profile = imap_profile("Other");
    profile.sender_name = "a\u0085b";
    EXPECT_EQ(failure_text([&] { file.save(profile); }),
              "5 The mail profile cannot be saved: 'sender name' holds a control character");
    profile.sender_name = QString(5000, u'x');
    EXPECT_EQ(failure_text([&] { file.save(profile); }),
              "5 The mail profile cannot be saved: 'sender name' is longer than 4096 characters");
    EXPECT_EQ(content(), before);
}

TEST_F(Profiles, SavingADamagedProfileMakesItSound)
{
    write("[profile]\nname=Work\ninbox port=x\n");
    const MailProfile read = file.find("Work")->profile;
    file.save(read, read);
    EXPECT_EQ(content(), "[profile]\nname=Work\n");
}

TEST_F(Profiles, HostileContentIsBounded)
{
    write("[profile]\nname=Long\ninbox host=" + QByteArray(5000, 'x') + "\n");
    EXPECT_EQ(file.find("Long")->damages,
              QStringList{"line 3: 'inbox host' is longer than 4096 characters"});
    write(QByteArray((1 << 20) + 1, '\n'));
    EXPECT_EQ(failure_text([&] { file.load(); }),
              "75 The mail profiles cannot be read: '" + path() + "' is larger than 1 MB");
    write(QByteArray("\0\xff\xfe[profile\n]=\n=\n%\n", 18));
    EXPECT_EQ(file.load().profiles.size(), 0U);
    EXPECT_FALSE(file.load().damages.isEmpty());
}

TEST_F(Profiles, WhatIsNoFileIsAnError)
{
    QDir().mkpath(path());
    EXPECT_EQ(failure_text([&] { file.load(); }),
              "75 The mail profiles cannot be read: '" + path() + "' is no file");
}

struct Missing
{
    const char *what;
    std::function<void(MailProfile &)> change;
    MailUse use;
    const char *missing;
};

class MissingInProfile : public testing::TestWithParam<Missing>
{
};

TEST_P(MissingInProfile, IsTold)
{
    MailProfile profile = imap_profile();
    GetParam().change(profile);
    EXPECT_EQ(missing_in(profile, GetParam().use), GetParam().missing) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Fields, MissingInProfile,
    testing::Values(Missing{"complete", [](MailProfile &) {}, MailUse::Reading, ""},
                    Missing{"complete", [](MailProfile &) {}, MailUse::Sending, ""},
                    Missing{"host", [](MailProfile &p) { p.inbox_server.host = " "; },
                            MailUse::Reading, "it names no IMAP server"},
                    Missing{"host of the other use",
                            [](MailProfile &p) { p.inbox_server.host = ""; }, MailUse::Sending, ""},
                    Missing{"user", [](MailProfile &p) { p.inbox_server.user = ""; },
                            MailUse::Reading, "it names no user for the IMAP server"},
                    Missing{"command", [](MailProfile &p) { p.inbox_server.token_command = ""; },
                            MailUse::Reading, "it names no token command for the IMAP server"},
                    Missing{"no user needed", [](MailProfile &p) { p.outgoing_server.user = ""; },
                            MailUse::Sending, ""},
                    Missing{"SMTP host", [](MailProfile &p) { p.outgoing_server.host = "a b"; },
                            MailUse::Sending, "its SMTP server 'a b' is no host name"},
                    Missing{"sendmail", [](MailProfile &p) { p.outgoing = OutgoingKind::Sendmail; },
                            MailUse::Sending, ""},
                    Missing{"POP3",
                            [](MailProfile &p) {
                                p.inbox = InboxKind::Pop3;
                                p.inbox_server.host = "";
                            },
                            MailUse::Reading, "it names no POP3 server"},
                    Missing{"Maildir",
                            [](MailProfile &p) {
                                p.inbox = InboxKind::Maildir;
                                p.inbox_path = "";
                            },
                            MailUse::Reading, "it names no Maildir folder"},
                    Missing{"mbox",
                            [](MailProfile &p) {
                                p.inbox = InboxKind::Mbox;
                                p.inbox_path = "";
                            },
                            MailUse::Reading, "it names no mailbox file"}));

TEST(ProfileRules, KnowTheProtocolsPorts)
{
    MailProfile profile;
    profile.inbox = InboxKind::Imap;
    EXPECT_EQ(default_port(profile, MailUse::Reading), 993);
    profile.inbox_server.security = LineSecurity::StartTls;
    EXPECT_EQ(default_port(profile, MailUse::Reading), 143);
    profile.inbox = InboxKind::Pop3;
    EXPECT_EQ(default_port(profile, MailUse::Reading), 110);
    profile.inbox_server.security = LineSecurity::Tls;
    EXPECT_EQ(default_port(profile, MailUse::Reading), 995);
    EXPECT_EQ(default_port(profile, MailUse::Sending), 465);
    profile.outgoing_server.security = LineSecurity::StartTls;
    EXPECT_EQ(default_port(profile, MailUse::Sending), 587);
    profile.outgoing_server.security = LineSecurity::Plain;
    EXPECT_EQ(default_port(profile, MailUse::Sending), 25);
}

TEST(ProfileRules, KnowAHost)
{
    for (const char *host : {"mail.example.org", "localhost", "127.0.0.1", "::1", "fe80::1%eth0",
                             "[::1]", "[fe80::1%eth0]"})
        EXPECT_TRUE(is_host(host)) << host;
    for (const char *host :
         {"", "a b", "-x", "http://a", "a@b", "a\nb", "a'b", "a;b", "[", "[]", "[::1", "::1]",
          "[[::1]]", "[::1]:993", "[mail.example.org]", "mail.example.org:993"})
        EXPECT_FALSE(is_host(host)) << host;
    EXPECT_FALSE(is_host(QString(256, 'a')));
}
} // namespace
