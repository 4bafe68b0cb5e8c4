#pragma once

#include "platform/date_time_text.h"
#include "tests/support/program_window.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

/// The tab "Schedule" in the real window, with a clock that a test sets and ticks that come at
/// once.
class ScheduleRoom : public ProgramWindow
{
protected:
    QTimer &timer() { return control<QTimer>("Timer1"); }
    bool is_scheduled() { return timer().isActive(); }
    QString state() { return text("schedule_text"); }

    void set_now(const QString &text)
    {
        const QDateTime moment = parse_date_time_text(text);
        now = QDateTime(moment.date(), moment.time());
    }

    /// Lets the clock go on a minute at a time; the timer ticks each time, unless it is stopped.
    void pass_minutes(int minutes)
    {
        for (int i = 0; i < minutes; ++i) {
            now = now.addSecs(60);
            tick();
        }
    }

    void tick()
    {
        if (is_scheduled())
            QMetaObject::invokeMethod(&timer(), "timeout");
    }

    QStringList history()
    {
        const auto &list = control<QListWidget>("List2");
        QStringList lines;
        for (int i = 0; i < list.count(); ++i)
            lines.append(list.item(i)->text());
        return lines;
    }

    QList<bool> days()
    {
        QList<bool> ticked;
        for (int i = 1; i <= 7; ++i)
            ticked.append(control<QCheckBox>(QStringLiteral("Check%1").arg(i)).isChecked());
        return ticked;
    }

    void step_up(const QString &spinner, int times = 1) { step(spinner, Qt::Key_Up, times); }
    void step_down(const QString &spinner, int times = 1) { step(spinner, Qt::Key_Down, times); }

private:
    void step(const QString &spinner, Qt::Key key, int times)
    {
        for (int i = 0; i < times; ++i)
            QTest::keyClick(&control<QSpinBox>(spinner), key);
    }
};
