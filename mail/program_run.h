#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>

/// How a program's run ended.
struct ProgramEnd
{
    enum class Kind {
        NotStarted,
        Exited, // with exit_code
        Crashed,
        TimedOut,
        InputLeft // it exited without having read all of its input
    };
    Kind kind = Kind::NotStarted;
    int exit_code = 0;
    QString words; // the end of its standard error, or why it did not start
};

/// Runs a program, without a shell, with `input` as its standard input; its output is thrown away.
/// Blocks. A program that neither reads, writes nor ends for `patience` is killed together with the
/// programs that it started.
/// @param turn  called several times a second meanwhile.
ProgramEnd run_program(const QString &program, const QStringList &arguments,
                       const QByteArray &input, std::chrono::milliseconds patience,
                       const std::function<void()> &turn);
