#include "mail/sendmail_way_out.h"
#include "platform/drive_path.h"
#include "platform/runtime_error.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/private_home.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

#include <thread>

namespace
{
using namespace std::chrono_literals;

const QByteArray message = "From: me@here.example\r\nTo: a@x.example\r\n\r\n.\r\nline\r\n";

class Sendmail : public testing::Test
{
protected:
    // A program that notes down its arguments, one a line, and its input, then goes on as told.
    QString program(const QByteArray &rest = "exit 0", const QString &name = "bin/sendmail") const
    {
        const QString path = home.file(name);
        put_file(path, "#!/bin/bash\ncd " + QFile::encodeName(home.path()) +
                           "\nnumber=$(($(ls | grep -c '^args') + 1))\n"
                           "printf '%s\\n' \"$@\" >args$number\n" +
                           (rest.contains("no-input") ? "" : "cat >input$number\n") + rest + "\n");
        QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    QByteArray noted(const QString &name) const
    {
        QFile file(home.file(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "(none)";
    }
    std::vector<RecipientFate> send(const QString &path, const QStringList &recipients,
                                    const QByteArray &bytes = message,
                                    std::chrono::milliseconds patience = 1s)
    {
        SendmailWayOut way(path, {patience, [this] { ++turns; }, {}});
        return way.hand_over("me@here.example", recipients, bytes);
    }
    RecipientFate fate(const QByteArray &rest, std::chrono::milliseconds patience = 1s)
    {
        return send(program(rest), {"a@x.example"}, message, patience).at(0);
    }

    PrivateHome home;
    int turns = 0;
};

TEST_F(Sendmail, GetsRecipientsAsArgumentsAndTheMessageAsInput)
{
    const auto fates = send(program(), {"a@x.example", "-b@x.example", "$(id)'\"`;@x.example"});
    EXPECT_EQ(noted("args1"), "-i\n-f\nme@here.example\n--\na@x.example\n-b@x.example\n"
                              "$(id)'\"`;@x.example\n");
    EXPECT_EQ(noted("input1"), QByteArray(message).replace("\r\n", "\n"));
    ASSERT_EQ(fates.size(), 3U);
    EXPECT_EQ(fates[1].recipient, "-b@x.example");
    for (const RecipientFate &each : fates) {
        EXPECT_EQ(each.fate, Fate::Accepted);
        EXPECT_EQ(each.words, "");
    }
}

TEST_F(Sendmail, GetsFiftyRecipientsAtATime)
{
    QStringList recipients;
    for (int i = 0; i < 120; ++i)
        recipients += QString("n%1@x.example").arg(i);
    const auto fates =
        send(program("[ $number != 2 ] || { echo 'no room' >&2; exit 69; }"), recipients);
    EXPECT_EQ(noted("args1").count('\n'), 54);
    EXPECT_TRUE(noted("args1").startsWith("-i\n-f\nme@here.example\n--\nn0@x.example\n"));
    EXPECT_TRUE(noted("args2").contains("--\nn50@x.example\n"));
    EXPECT_EQ(noted("args3").count('\n'), 24);
    EXPECT_EQ(noted("args4"), "(none)");
    ASSERT_EQ(fates.size(), 120U);
    for (int i = 0; i < 120; ++i) {
        const RecipientFate &each = fates[static_cast<std::size_t>(i)];
        EXPECT_EQ(each.recipient, recipients[i]);
        EXPECT_EQ(each.fate, i / 50 == 1 ? Fate::Refused : Fate::Accepted);
        EXPECT_EQ(each.words, i / 50 == 1 ? "exit code 69: no room" : "");
    }
}

TEST_F(Sendmail, GetsAddressesBeyondAsciiByThemselves)
{
    const auto fates = send(program(), {"jörg@x.example", "a@x.example"});
    EXPECT_TRUE(noted("args1").endsWith("--\na@x.example\n"));
    EXPECT_TRUE(noted("args2").endsWith("--\njörg@x.example\n"));
    EXPECT_EQ(fates.at(0).recipient, "jörg@x.example");
}

TEST_F(Sendmail, SaysWhyItRefuses)
{
    const RecipientFate refused = fate("echo 'first line' >&2; printf 'a\\033[31mb' >&2; exit 65");
    EXPECT_EQ(refused.fate, Fate::Refused);
    EXPECT_EQ(refused.words, "exit code 65: first line\\na\\u001B[31mb");
}

struct Exit
{
    int code;
    Fate fate;
};

class SendmailExit : public Sendmail, public testing::WithParamInterface<Exit>
{
};

TEST_P(SendmailExit, TellsWhatBecameOfTheMessage)
{
    const RecipientFate told = fate("exit " + QByteArray::number(GetParam().code));
    EXPECT_EQ(told.fate, GetParam().fate);
    EXPECT_EQ(told.words, QString("exit code %1").arg(GetParam().code));
}

INSTANTIATE_TEST_SUITE_P(
    Codes, SendmailExit,
    testing::Values(Exit{64, Fate::Refused}, Exit{65, Fate::Refused}, Exit{66, Fate::Refused},
                    Exit{67, Fate::Refused}, Exit{68, Fate::Refused}, Exit{69, Fate::Refused},
                    Exit{73, Fate::Refused}, Exit{77, Fate::Refused}, Exit{78, Fate::Refused},
                    Exit{75, Fate::NotNow}, Exit{70, Fate::Unknown}, Exit{71, Fate::Unknown},
                    Exit{72, Fate::Unknown}, Exit{74, Fate::Unknown}, Exit{76, Fate::Unknown},
                    Exit{1, Fate::Unknown}, Exit{127, Fate::Unknown}));

TEST_F(Sendmail, ThatHangsIsEndedWithAllItStarted)
{
    QElapsedTimer time;
    time.start();
    const RecipientFate hung =
        fate("sleep 60 & echo $! >child; echo waiting >&2; wait", 300ms); // ten times: 3 s
    EXPECT_LT(time.elapsed(), 10'000);
    EXPECT_EQ(hung.fate, Fate::Unknown);
    EXPECT_EQ(hung.words, "the program hung and was ended: waiting");
    EXPECT_GT(turns, 2);
    const QString child = QString::fromLatin1(noted("child").trimmed());
    ASSERT_FALSE(child.isEmpty());
    // Gone, or waiting to be buried by the system's first process; a kill takes its moment.
    const auto is_gone = [&child] {
        QFile status(QString("/proc/%1/stat").arg(child));
        return !status.open(QIODevice::ReadOnly) || status.readAll().contains(") Z ");
    };
    const QDeadlineTimer end(5'000);
    while (!is_gone() && !end.hasExpired())
        std::this_thread::sleep_for(5ms);
    EXPECT_TRUE(is_gone());
}

TEST_F(Sendmail, ThatHungOnceIsNotRunForTheOthers)
{
    QStringList recipients;
    for (int i = 0; i < 170; ++i)
        recipients += QString("n%1@x.example").arg(i);
    const auto fates =
        send(program("[ $number != 2 ] || sleep 60"), recipients, message, 300ms); // ten times: 3 s
    ASSERT_EQ(fates.size(), 170U);
    for (int i = 0; i < 170; ++i) {
        const RecipientFate &each = fates[static_cast<std::size_t>(i)];
        EXPECT_EQ(each.recipient, recipients[i]);
        EXPECT_EQ(each.fate, i < 50    ? Fate::Accepted
                             : i < 100 ? Fate::Unknown
                                       : Fate::NotTried)
            << i;
        EXPECT_EQ(each.words.isEmpty(), i < 50);
    }
    EXPECT_EQ(fates[100].words, "the program hung before it was their turn");
    EXPECT_EQ(noted("args3"), "(none)");
}

TEST_F(Sendmail, ThatIgnoresTheRequestToEndIsKilled)
{
    const RecipientFate hung = fate("trap '' TERM; while true; do sleep 0.1; done", 50ms);
    EXPECT_EQ(hung.fate, Fate::Unknown);
}

TEST_F(Sendmail, ThatIsSlowButAliveIsWaitedFor)
{
    EXPECT_EQ(fate("for i in 1 2 3 4 5 6; do sleep 0.25; echo $i >&2; done", 100ms).fate,
              Fate::Accepted);
}

TEST_F(Sendmail, ThatTalksWithoutEndWhileItReadsIsNoDeadlock)
{
    const QByteArray large = message + QByteArray(4'000'000, 'x') + "\r\n";
    const auto fates = send(program("no-input=1\nhead -c 3000000 /dev/zero | tr '\\0' y >&2\n"
                                    "wc -c >size\nhead -c 3000000 /dev/zero >&1"),
                            {"a@x.example"}, large);
    EXPECT_EQ(fates.at(0).fate, Fate::Accepted);
    EXPECT_EQ(noted("size").trimmed().toInt(), QByteArray(large).replace("\r\n", "\n").size());
}

TEST_F(Sendmail, ThatDoesNotReadItAllIsNotBelieved)
{
    const QByteArray large = message + QByteArray(4'000'000, 'x') + "\r\n";
    const auto fates =
        send(program(": no-input; head -c 100 >/dev/null; exit 0"), {"a@x.example"}, large);
    EXPECT_EQ(fates.at(0).fate, Fate::Unknown);
    EXPECT_EQ(fates.at(0).words, "the program did not read the whole message");
}

TEST_F(Sendmail, ThatCrashesLeavesItOpen)
{
    const RecipientFate crashed = fate("kill -SEGV $$");
    EXPECT_EQ(crashed.fate, Fate::Unknown);
    EXPECT_EQ(crashed.words, "the program crashed");
}

TEST_F(Sendmail, ThatCannotBeStartedGotNobody)
{
    put_file(home.file("broken"), "#!/no/such/interpreter\n");
    QFile(home.file("broken")).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(send(home.file("broken"), {"a@x.example"}).at(0).fate, Fate::NotTried);
}

TEST_F(Sendmail, IsLookedUpInPath)
{
    const QString path = program();
    qputenv("PATH",
            QFile::encodeName(home.file("none") + ":" + home.file("bin")) + ":/usr/bin:/bin");
    EXPECT_EQ(find_sendmail(""), path);
    EXPECT_EQ(find_sendmail("sendmail"), path);
}

TEST_F(Sendmail, IsLookedUpInTheSystemsFoldersToo)
{
    program("exit 0", "sbin/sendmail");
    qputenv("PATH", QFile::encodeName(home.file("none")) + ":/usr/bin:/bin");
    EXPECT_EQ(find_sendmail("", {home.file("lib"), home.file("sbin")}), home.file("sbin/sendmail"));
}

TEST_F(Sendmail, ThatIsNowhereIsAFailure)
{
    qputenv("PATH", QFile::encodeName(home.file("none")));
    for (const QStringList &folders : {QStringList(), QStringList(home.file("none"))}) {
        try {
            find_sendmail("", folders);
            ADD_FAILURE() << "there was one";
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), 32000);
            EXPECT_EQ(error.description(),
                      "There is no program \"sendmail\" on this machine to send mail with. Install "
                      "a mail server, or set up a mail profile that sends through one.");
        }
    }
}

TEST_F(Sendmail, MayBeNamedByAPath)
{
    const QString path = program("exit 0", "other/my mailer");
    EXPECT_EQ(find_sendmail(path), path);
    QDir().mkpath(data_folder() + "/Ostrix");
    QFile::copy(path, data_folder() + "/Ostrix/mailer");
    EXPECT_EQ(find_sendmail("c:\\ostrix\\Mailer"), data_folder() + "/Ostrix/mailer");
}

class MissingSendmail : public Sendmail, public testing::WithParamInterface<QString>
{
};

TEST_P(MissingSendmail, IsAFailureThatNamesIt)
{
    try {
        find_sendmail(GetParam());
        FAIL();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), 32000);
        EXPECT_TRUE(error.description().startsWith("There is no program \"" + GetParam() +
                                                   "\" on this machine to send mail with."));
    }
}

INSTANTIATE_TEST_SUITE_P(Names, MissingSendmail,
                         testing::Values("no-such-mailer", "/no/such/mailer", "/etc/passwd", "/usr",
                                         "D:\\mailer", "C:\\mailer"));
TEST_F(Sendmail, OfTheSampleFillsAnOutbox)
{
    const QString program = QStringLiteral(OSTRIX_SAMPLE "/bin/sendmail");
    const QStringList recipients = {"a@x.example", "-b@x.example"};
    for (int number = 1; number <= 2; ++number) {
        for (const RecipientFate &each : send(program, recipients))
            EXPECT_EQ(each.fate, Fate::Accepted) << each.words.toStdString();
        const QString base = QString("Outbox/%1").arg(number);
        EXPECT_EQ(noted(base + ".eml"), QByteArray(message).replace("\r\n", "\n"));
        EXPECT_EQ(noted(base + ".recipients.txt"), "a@x.example\n-b@x.example\n");
    }
    EXPECT_EQ(send(program, {}).size(), 0U);
}
} // namespace
