#pragma once

#include "platform/progress_report.h"

#include <QLabel>

#include <functional>
#include <optional>

class QStatusBar;

/// How far long work is, in the status bar. Painted at once but at most every 50 ms, the grids
/// every 150 ms, and without a turn of the event loop, so that no click gets into the middle of a
/// command.
class StatusProgress : public ProgressReport
{
public:
    using Milliseconds = std::function<qint64()>;

    /// `repaint_grids` paints what the work has changed. `now` counts milliseconds; the system's
    /// steady clock unless a test gives another.
    StatusProgress(QStatusBar &bar, std::function<void()> repaint_grids,
                   Milliseconds now = steady_milliseconds());

    void tell(const QString &what, qint64 done, qint64 total) override;
    void clear() override;
    void note(const QString &text) override;

    /// What the schedule is doing, at the bar's right end whatever else is told; empty for nothing.
    void show_schedule(const QString &text) { schedule_->setText(text); }

    static Milliseconds steady_milliseconds();

private:
    using Painted = std::optional<qint64>; // when it was
    bool is_due(Painted &painted, qint64 interval) const;

    QLabel *text_;
    QLabel *schedule_;
    QString note_;
    std::function<void()> repaint_grids_;
    Milliseconds now_;
    Painted text_painted_;
    Painted grids_painted_;
};
