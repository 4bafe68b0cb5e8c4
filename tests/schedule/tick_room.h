#pragma once

#include "tests/schedule/schedule_room.h"

inline const QStringList no_boxes;

/// A schedule on the real page, with one message in the inbox.
class Tick : public ScheduleRoom
{
protected:
    Tick() { mail.inbox = {{"ann@example.org", "Hello", "2026-01-02 03:04:05", "Ann", "text"}}; }

    /// Started on the Monday 2026-03-02 at 09:30:00.
    void start(const QStringList &ticked_days, const QString &hours, const QString &minutes)
    {
        set_now("2026-03-02 09:30:00");
        for (const QString &day : ticked_days)
            click(day);
        set_text("Text18", hours);
        set_text("Text19", minutes);
        click("Command15");
    }

    qsizetype runs() { return mail.calls.count("SignOn"); }
};
