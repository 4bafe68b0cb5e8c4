#include "platform/date_time_text.h"
#include "schedule/due_rule.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace
{
QDateTime at(const char *text)
{
    return parse_date_time_text(QString::fromLatin1(text));
}

TEST(Weekday, CountsFromSunday)
{
    const QDate sunday(2026, 3, 1);
    for (int day = 0; day < 14; ++day)
        EXPECT_EQ(weekday_number(sunday.addDays(day)), day % 7 + 1) << day;
}

struct Span
{
    const char *from;
    const char *to;
    qint64 hours;
    qint64 minutes;
};

class Boundaries : public testing::TestWithParam<Span>
{
};

TEST_P(Boundaries, AreCountedByWhatTheClockShows)
{
    const Span &span = GetParam();
    EXPECT_EQ(hour_boundaries(at(span.from), at(span.to)), span.hours);
    EXPECT_EQ(minute_boundaries(at(span.from), at(span.to)), span.minutes);
}

INSTANTIATE_TEST_SUITE_P(
    Spans, Boundaries,
    testing::Values(Span{"2026-03-02 10:59:59", "2026-03-02 11:00:00", 1, 1},
                    Span{"2026-03-02 10:00:00", "2026-03-02 10:59:59", 0, 59},
                    Span{"2026-03-02 10:00:59", "2026-03-02 10:01:00", 0, 1},
                    Span{"2026-03-02 10:01:00", "2026-03-02 10:01:59", 0, 0},
                    Span{"2026-03-02 23:59:59", "2026-03-03 00:00:00", 1, 1},
                    Span{"2026-02-28 23:30:00", "2026-03-01 00:10:00", 1, 40},
                    Span{"2028-02-28 23:00:00", "2028-03-01 00:00:00", 25, 1500},
                    Span{"2026-12-31 23:59:59", "2027-01-01 00:00:00", 1, 1},
                    Span{"2026-12-31 12:00:00", "2027-01-01 12:00:00", 24, 1440},
                    Span{"2026-03-02 11:00:00", "2026-03-02 10:59:59", -1, -1},
                    Span{"2026-03-02 11:00:00", "2026-03-01 11:00:00", -24, -1440},
                    Span{"1969-12-31 23:59:59", "1970-01-01 00:00:00", 1, 1},
                    Span{"1969-12-31 22:30:00", "1969-12-31 23:15:00", 1, 45}));

/// Both changes of summer time, by the local clock of a place that has them.
class SummerTime : public testing::Test
{
protected:
    SummerTime()
    {
        setenv("TZ", "Europe/Berlin", 1);
        tzset();
    }

    static QDateTime local(int month, int day, int hour, int minute, int second)
    {
        return {QDate(2026, month, day), QTime(hour, minute, second), Qt::LocalTime};
    }
};

TEST_F(SummerTime, TheHourThatIsSkippedCountsAsPassed)
{
    const QDateTime before = local(3, 29, 1, 59, 59);
    const QDateTime after = before.addSecs(1);
    ASSERT_EQ(after.time(), QTime(3, 0));
    EXPECT_EQ(hour_boundaries(before, after), 2);
    EXPECT_EQ(minute_boundaries(before, after), 61);
}

TEST_F(SummerTime, TheHourThatIsRepeatedCountsOnce)
{
    const QDateTime first =
        QDateTime::fromSecsSinceEpoch(local(10, 25, 1, 30, 0).toSecsSinceEpoch() + 3600);
    const QDateTime again = first.addSecs(3600);
    ASSERT_EQ(first.time(), QTime(2, 30));
    ASSERT_EQ(again.time(), QTime(2, 30));
    EXPECT_EQ(hour_boundaries(first, again), 0);
    EXPECT_EQ(minute_boundaries(first, again), 0);
    EXPECT_EQ(hour_boundaries(first, again.addSecs(1800)), 1);
}

TEST_F(SummerTime, AStartInTheSkippedHourIsReadBackAsWritten)
{
    const QDateTime start = parse_date_time_text("2026-03-29 02:30:00");
    ASSERT_TRUE(start.isValid());
    EXPECT_EQ(date_time_text(local(3, 29, 1, 30, 0)), "2026-03-29 01:30:00");
    EXPECT_EQ(hour_boundaries(start, local(3, 29, 4, 0, 0)), 2);
}

TEST(PeriodStart, WhatIsNoDateTimeIsNotValid)
{
    for (const char *text : {"", "yesterday", "2026-03-02", "2026-13-02 10:00:00",
                             "2026-02-30 10:00:00", "2026-03-02 24:00:00", "02.03.2026 10:00:00"})
        EXPECT_FALSE(at(text).isValid()) << text;
}

struct Due
{
    IntervalUnit unit;
    double interval;
    const char *start;
    const char *now;
    bool is_over;
};

class Interval : public testing::TestWithParam<Due>
{
};

TEST_P(Interval, IsOverWhenTheCountEqualsItExactly)
{
    const Due &due = GetParam();
    EXPECT_EQ(interval_is_over({due.unit, due.interval, {}}, at(due.start), at(due.now)),
              due.is_over);
}

constexpr auto monday_start = "2026-03-02 09:30:00";
INSTANTIATE_TEST_SUITE_P(
    Moments, Interval,
    testing::Values(Due{IntervalUnit::Hours, 2, monday_start, "2026-03-02 10:59:59", false},
                    Due{IntervalUnit::Hours, 2, monday_start, "2026-03-02 11:00:00", true},
                    Due{IntervalUnit::Hours, 2, monday_start, "2026-03-02 11:59:59", true},
                    Due{IntervalUnit::Hours, 2, monday_start, "2026-03-02 12:00:00", false},
                    Due{IntervalUnit::Hours, 1, "2026-03-02 10:59:00", "2026-03-02 11:00:30", true},
                    Due{IntervalUnit::Hours, 24, monday_start, "2026-03-03 09:00:00", true},
                    Due{IntervalUnit::Hours, 1, monday_start, "2026-03-02 09:59:59", false},
                    Due{IntervalUnit::Hours, 1, monday_start, "2026-03-03 10:00:00", false},
                    Due{IntervalUnit::Hours, 1.5, monday_start, "2026-03-02 11:00:00", false},
                    Due{IntervalUnit::Minutes, 5, monday_start, "2026-03-02 09:34:59", false},
                    Due{IntervalUnit::Minutes, 5, monday_start, "2026-03-02 09:35:00", true},
                    Due{IntervalUnit::Minutes, 5, monday_start, "2026-03-02 09:35:59", true},
                    Due{IntervalUnit::Minutes, 5, monday_start, "2026-03-02 09:36:00", false},
                    Due{IntervalUnit::Minutes, 60, monday_start, "2026-03-02 10:30:00", true},
                    Due{IntervalUnit::Minutes, 1, "2026-12-31 23:59:59", "2027-01-01 00:00:00",
                        true},
                    Due{IntervalUnit::Minutes, 1, monday_start, "2026-03-02 09:29:00", false}));

const QSet<int> monday = {2};
const QSet<int> monday_and_tuesday = {2, 3};

TEST(NextDue, IsTheBeginOfTheUnitInWhichTheIntervalIsOver)
{
    const RunPlan hours{IntervalUnit::Hours, 2, monday};
    const auto next = next_due(hours, at(monday_start), at("2026-03-02 09:30:00"));
    ASSERT_TRUE(next);
    EXPECT_EQ(date_time_text(*next), "2026-03-02 11:00:00");
    const RunPlan minutes{IntervalUnit::Minutes, 5, monday};
    EXPECT_EQ(next_due(minutes, at(monday_start), at("2026-03-02 09:30:59"))->time(), QTime(9, 35));
}

TEST(NextDue, IsNowWhileThatUnitLasts)
{
    const RunPlan plan{IntervalUnit::Hours, 2, monday};
    EXPECT_EQ(next_due(plan, at(monday_start), at("2026-03-02 11:20:00"))->time(), QTime(11, 20));
}

TEST(NextDue, IsNeverOnceThatUnitHasPassed)
{
    EXPECT_FALSE(
        next_due({IntervalUnit::Hours, 2, monday}, at(monday_start), at("2026-03-02 12:00:00")));
    EXPECT_FALSE(
        next_due({IntervalUnit::Minutes, 5, monday}, at(monday_start), at("2026-03-02 09:36:00")));
}

TEST(NextDue, IsNeverOnADayThatIsNotTicked)
{
    const QDateTime evening = at("2026-03-02 23:30:00");
    EXPECT_FALSE(next_due({IntervalUnit::Hours, 1, monday}, evening, evening));
    EXPECT_TRUE(next_due({IntervalUnit::Hours, 1, monday_and_tuesday}, evening, evening));
    EXPECT_FALSE(next_due({IntervalUnit::Hours, 1, {}}, evening, evening));
}

TEST(NextDue, IsNeverWithoutAWholeInterval)
{
    const QDateTime start = at(monday_start);
    for (const double interval : {0.0, -1.0, 1.5, 1e300})
        EXPECT_FALSE(next_due({IntervalUnit::Hours, interval, monday}, start, start)) << interval;
}
} // namespace
