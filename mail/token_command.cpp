#include "mail/token_command.h"

#include "mail/process_group.h"
#include "platform/runtime_error.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QProcess>

#include <algorithm>

namespace
{
constexpr qsizetype most_output = qsizetype(64) * 1024;

QString first_line(const QByteArray &output)
{
    const QString text = QString::fromUtf8(output);
    return text.left(text.indexOf(u'\n')).trimmed();
}

// What a program wrote may hold the token, control characters, or far too much.
QString readable(const QByteArray &errors, const QString &token)
{
    constexpr qsizetype readable_length = 400;
    QString text = QString::fromUtf8(errors.left(most_output));
    if (!token.isEmpty())
        text.replace(token, QStringLiteral("…"));
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return !c.isPrint(); }, u' ');
    return text.simplified().left(readable_length);
}

[[noreturn]] void fail(const QString &program, const QString &what, const QString &errors = {})
{
    QString description = QStringLiteral("The token command '%1' %2").arg(program, what);
    if (!errors.isEmpty())
        description += QStringLiteral(": ") + errors;
    throw RuntimeError(error_number::mail_failure, description);
}

/// A running token command; ended with all that it started when it is given up.
class TokenProcess
{
public:
    explicit TokenProcess(const QStringList &words) : program_(words.first())
    {
        process_.setStandardInputFile(QProcess::nullDevice());
        lead_group(process_);
        process_.start(program_, words.mid(1), QIODevice::ReadOnly);
        if (!process_.waitForStarted())
            fail(program_, QStringLiteral("cannot be started"), process_.errorString());
        group_ = static_cast<pid_t>(process_.processId());
    }
    ~TokenProcess()
    {
        if (process_.state() != QProcess::NotRunning)
            end_group(process_, group_);
    }
    Q_DISABLE_COPY_MOVE(TokenProcess)

    void wait(const TokenPatience &patience)
    {
        constexpr int slice = 50; // milliseconds
        const QDeadlineTimer deadline(patience.limit);
        while (process_.state() != QProcess::NotRunning) {
            process_.waitForFinished(slice);
            collect();
            if (deadline.hasExpired())
                fail(program_, QStringLiteral("did not end within %1 seconds")
                                   .arg(std::chrono::duration<double>(patience.limit).count()));
            patience.turn();
        }
        collect();
    }

    QString token() const
    {
        const QString token = first_line(output_);
        const QString errors = readable(errors_, token);
        if (process_.exitStatus() != QProcess::NormalExit)
            fail(program_, QStringLiteral("crashed"), errors);
        if (process_.exitCode() != 0)
            fail(program_, QStringLiteral("ended with exit code %1").arg(process_.exitCode()),
                 errors);
        if (token.isEmpty())
            fail(program_, QStringLiteral("printed no token"), errors);
        if (!std::all_of(token.begin(), token.end(),
                         [](QChar c) { return c > u' ' && c < u'\x7f'; }))
            fail(program_, QStringLiteral("printed a line that is no token"));
        return token;
    }

private:
    void collect()
    {
        output_ += process_.readAllStandardOutput();
        errors_ += process_.readAllStandardError();
        if (output_.size() > most_output || errors_.size() > most_output)
            fail(program_, QStringLiteral("printed more than %1 bytes").arg(most_output));
    }

    QString program_;
    QProcess process_;
    pid_t group_ = 0;
    QByteArray output_;
    QByteArray errors_;
};

// No shell sees the command, but people name their home as they do to one.
QStringList words_of(const QString &command)
{
    QStringList words = QProcess::splitCommand(command);
    for (QString &word : words) {
        if (word.startsWith(QStringLiteral("~/")))
            word.replace(0, 1, QDir::homePath());
    }
    return words;
}
} // namespace

QString run_token_command(const QString &command, const TokenPatience &patience)
{
    const QStringList words = words_of(command);
    if (words.isEmpty() || words.first().isEmpty())
        throw RuntimeError(error_number::mail_failure,
                           QStringLiteral("The token command is empty"));
    TokenProcess process(words);
    process.wait(patience);
    return process.token();
}
