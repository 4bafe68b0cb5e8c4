#include "mail/program_run.h"

#include "mail/process_group.h"

#include <QElapsedTimer>
#include <QProcess>

#include <utility>

namespace
{
constexpr int slice = 50; // milliseconds between two turns
constexpr qsizetype most_words = 4096;

class ProgramRun
{
public:
    ProgramRun(std::chrono::milliseconds patience, const std::function<void()> &turn)
        : patience_(patience),
          turn_(turn)
    {
        process_.setStandardOutputFile(QProcess::nullDevice());
        lead_group(process_);
        QObject::connect(&process_, &QProcess::bytesWritten, &process_,
                         [this](qint64 count) { written_ += count; });
    }

    ProgramEnd run(const QString &program, const QStringList &arguments, const QByteArray &input)
    {
        process_.start(program, arguments);
        if (!process_.waitForStarted())
            return {ProgramEnd::Kind::NotStarted, 0, process_.errorString()};
        group_ = static_cast<pid_t>(process_.processId());
        process_.write(input);
        process_.closeWriteChannel();
        const bool ended = wait();
        const bool read_all = written_ == input.size();
        if (!ended)
            end_group(process_, group_);
        read_words();
        return {ended ? kind_of_end(read_all) : ProgramEnd::Kind::TimedOut, process_.exitCode(),
                QString::fromUtf8(words_).trimmed()};
    }

private:
    // @return whether the program ended by itself.
    bool wait()
    {
        QElapsedTimer silence;
        silence.start();
        qint64 read_so_far = 0;
        while (!process_.waitForFinished(slice)) {
            if (process_.state() == QProcess::NotRunning)
                return true;
            const bool has_read = std::exchange(read_so_far, written_) != written_;
            if (read_words() || has_read)
                silence.restart();
            if (silence.hasExpired(patience_.count()))
                return false;
            turn_();
        }
        return true;
    }

    // @return whether there were any. Only the last ones are kept.
    bool read_words()
    {
        const QByteArray fresh = process_.readAllStandardError();
        words_ = (words_ + fresh).right(most_words);
        return !fresh.isEmpty();
    }

    ProgramEnd::Kind kind_of_end(bool read_all) const
    {
        if (process_.exitStatus() == QProcess::CrashExit)
            return ProgramEnd::Kind::Crashed;
        return read_all || process_.exitCode() != 0 ? ProgramEnd::Kind::Exited
                                                    : ProgramEnd::Kind::InputLeft;
    }

    QProcess process_;
    pid_t group_ = 0;
    qint64 written_ = 0;
    QByteArray words_;
    std::chrono::milliseconds patience_;
    const std::function<void()> &turn_;
};
} // namespace

ProgramEnd run_program(const QString &program, const QStringList &arguments,
                       const QByteArray &input, std::chrono::milliseconds patience,
                       const std::function<void()> &turn)
{
    return ProgramRun(patience, turn).run(program, arguments, input);
}
