#include "mail/token_command.h"
#include "platform/runtime_error.h"
#include "tests/mail/mail_texts.h"
#include "tests/support/private_home.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

#include <thread>

namespace
{
class TokenCommand : public testing::Test
{
protected:
    /// A program of the test's own; the command line that runs it.
    QString script(const QByteArray &body)
    {
        const QString path = home.file("print token");
        put_file(path, "#!/bin/sh\n" + body);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return '"' + path + '"';
    }
    QString failure(const QString &command, const TokenPatience &patience = {})
    {
        try {
            run_token_command(command, patience);
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), 32000);
            return error.description();
        }
        return "no failure";
    }
    QString named() const { return "The token command '" + home.file("print token") + "' "; }

    PrivateHome home;
};

TEST_F(TokenCommand, ItsFirstLineIsTheToken)
{
    EXPECT_EQ(run_token_command(script("echo ' ya29.abc-_~+/= '; echo rest")), "ya29.abc-_~+/=");
}

TEST_F(TokenCommand, ArgumentsArriveAsTypedAndNoShellSeesThem)
{
    const QString command = script("echo \"$#:$1:$2:$3\" | tr ' ' '_'");
    EXPECT_EQ(run_token_command(command + " \"a b\" $HOME ;touch"), "3:a_b:$HOME:;touch");
}

TEST_F(TokenCommand, LiesInTheUsersHomeWhereThatIsNamed)
{
    script("echo $1");
    EXPECT_EQ(run_token_command("\"~/print token\" ~/a"), home.file("a"));
    EXPECT_EQ(run_token_command("\"~/print token\" ~a~/"), "~a~/");
}

TEST_F(TokenCommand, GetsNothingToRead)
{
    EXPECT_EQ(run_token_command(script("cat; echo token")), "token");
}

TEST_F(TokenCommand, FailsWithItsExitCodeAndItsWordsButWithoutTheToken)
{
    EXPECT_EQ(failure(script("echo s3cret; echo 'no \033[1mluck with s3cret' >&2; exit 3")),
              named() + "ended with exit code 3: no [1mluck with …");
}

TEST_F(TokenCommand, ThatPrintsNoTokenFails)
{
    EXPECT_EQ(failure(script("echo expired >&2")), named() + "printed no token: expired");
    EXPECT_EQ(failure(script("printf 'a\\001b\\n'")), named() + "printed a line that is no token");
    EXPECT_EQ(failure(script("echo 'log on first'")), named() + "printed a line that is no token");
    EXPECT_EQ(failure(script("head -c 100000 /dev/zero")),
              named() + "printed more than 65536 bytes");
    EXPECT_EQ(failure(script("kill -9 $$")), named() + "crashed");
}

TEST_F(TokenCommand, ThatIsNoProgramFails)
{
    EXPECT_EQ(failure("  "), "The token command is empty");
    EXPECT_TRUE(failure("/no/such/program x")
                    .startsWith("The token command '/no/such/program' cannot be started: "));
}

TEST_F(TokenCommand, ThatHangsIsGivenUpWhileTheWindowsPaint)
{
    int turns = 0;
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(
        failure(script("exec sleep 30"), {std::chrono::milliseconds(300), [&turns] { ++turns; }}),
        named() + "did not end within 0.3 seconds");
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_GT(turns, 1);
}

TEST_F(TokenCommand, ThatIsGivenUpIsEndedWithAllItStarted)
{
    const QString noted = home.file("child");
    EXPECT_EQ(failure(script("sleep 60 & echo $! >'" + QFile::encodeName(noted) + "'; wait"),
                      {std::chrono::milliseconds(500), [] {}}),
              named() + "did not end within 0.5 seconds");
    QFile file(noted);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray child = file.readAll().trimmed();
    ASSERT_FALSE(child.isEmpty());
    // Gone, or waiting to be buried by the system's first process; a kill takes its moment.
    const auto is_gone = [&child] {
        QFile status(QString("/proc/%1/stat").arg(QString::fromLatin1(child)));
        return !status.open(QIODevice::ReadOnly) || status.readAll().contains(") Z ");
    };
    const QDeadlineTimer end(5'000);
    while (!is_gone() && !end.hasExpired())
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_TRUE(is_gone());
}
} // namespace
