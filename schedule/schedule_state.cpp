#include "schedule/schedule_state.h"

#include "platform/skipped_steps.h"

QString state_until(const std::optional<QDateTime> &next_run, const QString &last_run)
{
    const QString next = next_run ? QStringLiteral("Schedule: next run at %1")
                                        .arg(next_run->toString(QStringLiteral("yyyy-MM-dd HH:mm")))
                                  : QStringLiteral("Schedule: no run will come; start it again");
    return last_run.isEmpty() ? next : QStringLiteral("%1, last run at %2").arg(next, last_run);
}

QString state_while_running(const QString &begun)
{
    return QStringLiteral("Schedule: the run of %1 is going on").arg(begun);
}

QString skipped_note(const QString &begun, const SkippedSteps &skipped)
{
    const QString steps = skipped.count() == 1 ? QStringLiteral("one step")
                                               : QStringLiteral("%1 steps").arg(skipped.count());
    return QStringLiteral("The run of %1 passed over %2:\n%3").arg(begun, steps, skipped.list());
}
