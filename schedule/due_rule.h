#pragma once

#include <QDateTime>
#include <QSet>

#include <optional>

enum class IntervalUnit { Hours, Minutes };

/// Sunday 1, Monday 2 … Saturday 7.
int weekday_number(const QDate &day);

/// How many clock hours (minutes) begin between the two moments, by what clock and calendar show: a
/// change of summer time is not seen. Negative when `to` lies before `from`.
qint64 hour_boundaries(const QDateTime &from, const QDateTime &to);
qint64 minute_boundaries(const QDateTime &from, const QDateTime &to);

/// How often and on which days a run is due.
struct RunPlan
{
    IntervalUnit unit = IntervalUnit::Hours;
    double interval = 0; // in units
    QSet<int> weekdays;  // by weekday_number()
};

/// Whether a run is due by its interval: exactly as many boundaries have been crossed since `start`
/// as the interval says, not more.
bool interval_is_over(const RunPlan &plan, const QDateTime &start, const QDateTime &now);

/// The first moment from `now` on at which a tick finds a run due; nothing when there is none,
/// because the one unit of time in which the interval is over has passed, lies on another day, or
/// is skipped by summer time.
std::optional<QDateTime> next_due(const RunPlan &plan, const QDateTime &start,
                                  const QDateTime &now);
