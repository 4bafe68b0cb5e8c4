#include "schedule/due_rule.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr qint64 seconds_per_hour = 3600;
constexpr qint64 seconds_per_minute = 60;

// What clock and calendar show, on a time line without changes of summer time.
QDateTime as_shown(const QDateTime &moment)
{
    return {moment.date(), moment.time(), Qt::UTC};
}

qint64 whole_units(const QDateTime &moment, qint64 seconds_per_unit)
{
    const qint64 seconds = as_shown(moment).toSecsSinceEpoch();
    const qint64 rest = ((seconds % seconds_per_unit) + seconds_per_unit) % seconds_per_unit;
    return (seconds - rest) / seconds_per_unit;
}

qint64 seconds_of(IntervalUnit unit)
{
    return unit == IntervalUnit::Hours ? seconds_per_hour : seconds_per_minute;
}

qint64 boundaries(IntervalUnit unit, const QDateTime &from, const QDateTime &to)
{
    return whole_units(to, seconds_of(unit)) - whole_units(from, seconds_of(unit));
}
} // namespace

int weekday_number(const QDate &day)
{
    return day.dayOfWeek() % 7 + 1;
}

qint64 hour_boundaries(const QDateTime &from, const QDateTime &to)
{
    return boundaries(IntervalUnit::Hours, from, to);
}

qint64 minute_boundaries(const QDateTime &from, const QDateTime &to)
{
    return boundaries(IntervalUnit::Minutes, from, to);
}

bool interval_is_over(const RunPlan &plan, const QDateTime &start, const QDateTime &now)
{
    return static_cast<double>(boundaries(plan.unit, start, now)) == plan.interval;
}

std::optional<QDateTime> next_due(const RunPlan &plan, const QDateTime &start, const QDateTime &now)
{
    constexpr double longest = 1e6; // units; a longer interval is never met
    if (plan.interval < 1 || plan.interval > longest || std::floor(plan.interval) != plan.interval)
        return {};
    const qint64 unit = seconds_of(plan.unit);
    const qint64 begin_units = whole_units(start, unit) + static_cast<qint64>(plan.interval);
    const QDateTime begin = QDateTime::fromSecsSinceEpoch(begin_units * unit, Qt::UTC);
    const QDateTime end = begin.addSecs(unit);
    const QDateTime shown_now = as_shown(now);
    if (shown_now >= end || !plan.weekdays.contains(weekday_number(begin.date())))
        return {};
    const QDateTime due = std::max(begin, shown_now);
    const QDateTime local(due.date(), due.time());
    return local.isValid() ? std::optional(local) : std::nullopt; // summer time skips that hour
}
