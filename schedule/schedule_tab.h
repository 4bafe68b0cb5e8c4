#pragma once

#include "platform/date_time_text.h"

#include <QSet>
#include <QTimer>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

class EventHandlers;
class Prompts;
class QCheckBox;
class SkippedSteps;
struct RunPlan;

namespace Ui
{
class ScheduleTab;
}

/// What the schedule works with. Everything in it outlives the tab.
struct ScheduleDesk
{
    Clock clock;
    Prompts &prompts;
    /// The retrieval that a due tick starts; it takes what the run passed over.
    std::function<void(SkippedSteps &)> run;
    /// Whether something is going on that a run must not come into the middle of: a tick waits
    /// until it is done.
    std::function<bool()> is_busy;
    /// Shows a person what the schedule is doing: one line, empty when it is stopped.
    std::function<void(const QString &)> show_state;
    /// Shows what a run has passed over.
    std::function<void(const QString &)> show_note;
};

/// The tab "Schedule": on which days and how often the retrieval is repeated, and when it was. All
/// of it is forgotten when the program ends.
class ScheduleTab : public QWidget
{
    Q_OBJECT

public:
    explicit ScheduleTab(QWidget *parent = nullptr);
    ~ScheduleTab() override;

    void wire(EventHandlers &handlers, ScheduleDesk desk);

    /// Its ticks, one a minute, are what runs the schedule.
    QTimer &Timer1() { return timer_; }

    /// Shows that a retrieval, by hand or scheduled, has just come to its end.
    void retrieval_finished();

private:
    void follow_state();
    std::array<QCheckBox *, 7> day_boxes() const;
    bool is_any_day_ticked() const;
    QSet<int> ticked_days() const;
    RunPlan plan() const;
    QDateTime period_start() const;

    void Command15_Click();
    void Command16_Click();
    void Command17_Click();
    void Check8_Click();
    void UpDown1_Change();
    void UpDown2_Change();
    void Timer1_Timer();
    void runSchedule_Click();

    void hold_tick();
    void release_tick();
    bool would_run(const QDateTime &moment) const;
    void tick(const QDateTime &moment);
    void tell_once(const QString &text);
    bool is_run_due(const QDateTime &moment);
    void run_now();
    void note_skipped(const QString &begun, const SkippedSteps &skipped);
    void show_state();

    std::unique_ptr<Ui::ScheduleTab> ui_;
    std::unique_ptr<ScheduleDesk> desk_;
    QTimer timer_{this};
    QTimer held_tick_{this};
    QDateTime held_at_; // when the tick came that waits
    QString last_run_;
    bool is_telling_ = false;
    bool is_running_ = false;
};
