#include "app/activity_log.h"

#include "platform/text_file.h"

#include <utility>

ActivityLog::ActivityLog(Clock clock) : clock_(std::move(clock)) {}

void ActivityLog::write_batch(const QString &entries) const
{
    const QString line_end = QStringLiteral("\r\n");
    append_text_file(deletion_log, date_time_text(clock_()) + entries + line_end);
    write_text_file(last_batch_log, date_time_text(clock_()) + entries + line_end);
}
