#pragma once

#include "platform/prompts.h"

/// A person who agrees to everything but the purges, which are measured by themselves, and opens
/// the file that BENCH_FILE names. What they are told goes to standard error. After a run-time
/// error the program ends with exit code 1, as it always does.
class AnsweringPrompts : public Prompts
{
public:
    /// Whether a notice was shown that no command shows when all is well.
    bool was_told_something() const { return told_; }

    void notice(const QString &text, NoticeIcon icon) override;
    bool yes_no(const QString &question) override;
    bool ok_cancel(const QString &question) override;
    QString open_file(const FileChoice &choice) override;
    QString save_file(const FileChoice &choice) override;
    QString input(const QString &question) override;
    void run_time_error(const QString &report) override;

private:
    bool told_ = false;
};
