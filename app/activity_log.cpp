#include "app/activity_log.h"

#include "platform/text_file.h"

#include <utility>

namespace
{
const QString line_end = QStringLiteral("\r\n");
}

ActivityLog::ActivityLog(Clock clock) : clock_(std::move(clock)) {}

void ActivityLog::write_batch(const QString &entries) const
{
    append_text_file(deletion_log, date_time_text(clock_()) + entries + line_end);
    write_text_file(last_batch_log, date_time_text(clock_()) + entries + line_end);
}

void ActivityLog::write_note(const QString &text) const
{
    append_text_file(deletion_log, date_time_text(clock_()) + text + line_end);
}
