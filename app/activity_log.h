#pragma once

#include "platform/date_time_text.h"

#include <QString>

/// The two log files with fixed paths: every batch ever logged, and the last batch alone.
class ActivityLog
{
public:
    /// "c:\Ostrix\log.log": appended to, made when absent.
    inline static const QString deletion_log = QStringLiteral("c:\\Ostrix\\log.log");
    /// "c:\Ostrix\system.log": holds exactly the last batch.
    inline static const QString last_batch_log = QStringLiteral("c:\\Ostrix\\system.log");

    explicit ActivityLog(Clock clock);

    /// Appends the batch to the deletion log, then replaces the last-batch log by it. A batch is
    /// the date-time text, `entries` (each entry preceded by CR LF) and CR LF, without a separator.
    /// @throws RuntimeError when a file cannot be written, as append_text_file() and
    /// write_text_file().
    void write_batch(const QString &entries) const;

    /// Appends one line, the date-time text and `text` without a separator, to the deletion log.
    /// @throws RuntimeError as append_text_file().
    void write_note(const QString &text) const;

private:
    Clock clock_;
};
