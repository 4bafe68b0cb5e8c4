#pragma once

#include "platform/progress_report.h"

#include <functional>
#include <optional>

class QLabel;
class QStatusBar;

/// How far long work is, in the status bar. Painted at once but at most every 50 ms, and without a
/// turn of the event loop, so that no click gets into the middle of a command.
class StatusProgress : public ProgressReport
{
public:
    using Milliseconds = std::function<qint64()>;

    /// `repaint_grids` runs with each painting. `now` counts milliseconds; the system's steady
    /// clock unless a test gives another.
    StatusProgress(QStatusBar &bar, std::function<void()> repaint_grids,
                   Milliseconds now = steady_milliseconds());

    void tell(const QString &what, qint64 done, qint64 total) override;
    void clear() override;

    static Milliseconds steady_milliseconds();

private:
    bool is_due();

    QLabel *text_;
    std::function<void()> repaint_grids_;
    Milliseconds now_;
    std::optional<qint64> painted_;
};
