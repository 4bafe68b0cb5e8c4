#include "schedule/system_log_purge.h"

#include "app/activity_log.h"
#include "db/data_connection.h"
#include "platform/number_text.h"
#include "schedule/due_rule.h"

void purge_system_log(const QString &period, const QDateTime &reference, const QDateTime &now,
                      DataConnection &work_table, const ActivityLog &log)
{
    if (period.isEmpty() ||
        !interval_is_over({IntervalUnit::Hours, number_of(period), {}}, reference, now))
        return;
    work_table.execute("delete * from system");
    work_table.refresh();
    log.write_note(QStringLiteral("System Log Deleted According To Schedule"));
}
