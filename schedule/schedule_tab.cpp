#include "schedule/schedule_tab.h"

#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "platform/number_text.h"
#include "platform/shown_text.h"
#include "platform/skipped_steps.h"
#include "schedule/due_rule.h"
#include "schedule/schedule_state.h"
#include "ui_schedule_tab.h"

#include <QCoreApplication>
#include <QScopeGuard>

#include <algorithm>
#include <utility>

ScheduleTab::ScheduleTab(QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::ScheduleTab>())
{
    ui_->setupUi(this);
    ui_->runSchedule->hide();
    ui_->UpDown1->set_buddy(*ui_->Text18);
    ui_->UpDown2->set_buddy(*ui_->Text19);
    timer_.setObjectName(QStringLiteral("Timer1"));
    timer_.setInterval(60000); // milliseconds
    held_tick_.setObjectName(QStringLiteral("held_tick"));
    held_tick_.setSingleShot(true);
    held_tick_.setInterval(1000); // milliseconds
    make_primary(*ui_->Command15);
}

ScheduleTab::~ScheduleTab() = default;

void ScheduleTab::wire(EventHandlers &handlers, ScheduleDesk desk)
{
    desk_ = std::make_unique<ScheduleDesk>(std::move(desk));
    handlers.on_click(ui_->Command15, [this] { Command15_Click(); }); // "Start Schedule"
    handlers.on_click(ui_->Command16, [this] { Command16_Click(); }); // "Stop"
    handlers.on_click(ui_->Command17, [this] { Command17_Click(); }); // "Refresh"
    handlers.on_click(ui_->Check8, [this] { Check8_Click(); });       // "Everyday"
    handlers.on_click(ui_->runSchedule, [this] { runSchedule_Click(); });
    handlers.on(ui_->UpDown1, &UpDown::valueChanged, [this] { UpDown1_Change(); });
    handlers.on(ui_->UpDown2, &UpDown::valueChanged, [this] { UpDown2_Change(); });
    handlers.on(&timer_, &QTimer::timeout, [this] { Timer1_Timer(); });
    handlers.on(&held_tick_, &QTimer::timeout, [this] { release_tick(); });
    follow_state();
}

// What the schedule does next depends on these, whoever changes them.
void ScheduleTab::follow_state()
{
    for (QCheckBox *box : day_boxes())
        connect(box, &QCheckBox::toggled, this, &ScheduleTab::show_state);
    for (QLineEdit *box : {ui_->Text18, ui_->Text19, ui_->Text20})
        connect(box, &QLineEdit::textChanged, this, &ScheduleTab::show_state);
}

// Check1 is Monday.
std::array<QCheckBox *, 7> ScheduleTab::day_boxes() const
{
    return {ui_->Check1, ui_->Check2, ui_->Check3, ui_->Check4,
            ui_->Check5, ui_->Check6, ui_->Check7};
}

bool ScheduleTab::is_any_day_ticked() const
{
    const auto boxes = day_boxes();
    return std::any_of(boxes.begin(), boxes.end(), [](QCheckBox *box) { return box->isChecked(); });
}

QSet<int> ScheduleTab::ticked_days() const
{
    constexpr std::array<int, 7> weekday_numbers = {2, 3, 4, 5, 6, 7, 1};
    const auto boxes = day_boxes();
    QSet<int> days;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        if (boxes[i]->isChecked())
            days.insert(weekday_numbers[i]);
    }
    return days;
}

// Hours win; minutes count only when there are none.
RunPlan ScheduleTab::plan() const
{
    const double hours = number_of(ui_->Text18->text());
    if (hours > 0)
        return {IntervalUnit::Hours, hours, ticked_days()};
    return {IntervalUnit::Minutes, number_of(ui_->Text19->text()), ticked_days()};
}

void ScheduleTab::Command15_Click()
{
    if (!is_any_day_ticked()) {
        desk_->prompts.notice(
            QStringLiteral("Please indicate which days you would like to run the program!"));
        return;
    }
    const double hours = number_of(ui_->Text18->text());
    const double minutes = number_of(ui_->Text19->text());
    if (hours == 0 && minutes == 0) {
        desk_->prompts.notice(QStringLiteral("Please enter the interval between program runs"));
        return;
    }
    ui_->Text20->setText(date_time_text(desk_->clock()));
    timer_.start();
    show_state();
}

void ScheduleTab::Command16_Click()
{
    timer_.stop();
    show_state();
}

void ScheduleTab::Command17_Click()
{
    ui_->Text20->clear();
    ui_->Text21->clear();
    ui_->Text18->setText(QStringLiteral("0"));
    ui_->Text19->setText(QStringLiteral("0"));
    UpDown1_Change();
    UpDown2_Change();
    ui_->List2->clear();
    timer_.stop();
    show_state();
    desk_->prompts.notice(QStringLiteral("The schedule has been stopped!"),
                          NoticeIcon::Information);
}

void ScheduleTab::Check8_Click()
{
    for (QCheckBox *box : day_boxes())
        box->setChecked(ui_->Check8->isChecked());
}

void ScheduleTab::UpDown1_Change()
{
    const bool is_zero = number_of(ui_->Text18->text()) == 0;
    for (QWidget *minutes :
         std::initializer_list<QWidget *>{ui_->Text19, ui_->UpDown2, ui_->Label18})
        minutes->setVisible(is_zero);
}

void ScheduleTab::UpDown2_Change()
{
    const bool is_zero = number_of(ui_->Text19->text()) == 0;
    if (is_zero && number_of(ui_->Text18->text()) != 0)
        return;
    for (QWidget *hours : std::initializer_list<QWidget *>{ui_->Text18, ui_->UpDown1, ui_->Label17})
        hours->setVisible(is_zero);
}

// A manual run or a message that waits for its server lets timers go on, as an import does for a
// moment; a run in its middle would take its session or its rows away.
void ScheduleTab::Timer1_Timer()
{
    if (!timer_.isActive())
        return;
    if (is_running_ || desk_->is_busy())
        hold_tick();
    else
        tick(desk_->clock());
}

// A tick that starts a run is kept: what it waits for may outlast the minute in which it is due.
void ScheduleTab::hold_tick()
{
    const QDateTime moment = desk_->clock();
    if (!held_tick_.isActive() || would_run(moment))
        held_at_ = moment;
    held_tick_.start();
}

void ScheduleTab::release_tick()
{
    if (!timer_.isActive())
        return;
    if (is_running_ || desk_->is_busy()) {
        held_tick_.start();
        return;
    }
    // Runs come on ticked days only, also when the wait has gone on past midnight.
    const QDateTime now = desk_->clock();
    tick(ticked_days().contains(weekday_number(now.date())) ? held_at_ : now);
}

bool ScheduleTab::would_run(const QDateTime &moment) const
{
    bool due = false;
    attempt([&] {
        due = ticked_days().contains(weekday_number(moment.date())) && plan().interval > 0 &&
              interval_is_over(plan(), period_start(), moment);
    });
    return due;
}

void ScheduleTab::tick(const QDateTime &moment)
{
    if (!ticked_days().contains(weekday_number(moment.date()))) {
        if (!is_any_day_ticked())
            tell_once(
                QStringLiteral("Please indicate which days you would like to run the schedule!"));
        show_state();
        return;
    }
    if (is_run_due(moment))
        run_now();
    show_state();
}

// While nobody answers, the next minute's tick must not pile another box on the first.
void ScheduleTab::tell_once(const QString &text)
{
    if (is_telling_)
        return;
    is_telling_ = true;
    const auto told = qScopeGuard([this] { is_telling_ = false; });
    desk_->prompts.notice(text);
}

bool ScheduleTab::is_run_due(const QDateTime &moment)
{
    if (plan().interval <= 0) {
        tell_once(QStringLiteral("You have to set the interval between program runs"));
        return false;
    }
    QCoreApplication::processEvents();
    if (plan().interval <= 0) // "Refresh" was pressed in that turn
        return false;
    return interval_is_over(plan(), period_start(), moment);
}

QDateTime ScheduleTab::period_start() const
{
    const QDateTime start = parse_date_time_text(ui_->Text20->text());
    if (!start.isValid())
        throw RuntimeError(error_number::type_mismatch,
                           QStringLiteral("Type mismatch: the period start '%1' is not a date-time "
                                          "like 2026-01-31 09:30:00.")
                               .arg(ui_->Text20->text()));
    return start;
}

void ScheduleTab::run_now()
{
    timer_.stop();
    const QString begun = date_time_text(desk_->clock());
    ui_->List2->addItem(begun);
    ui_->Text20->setText(begun);
    last_run_ = begun;
    is_running_ = true;
    show_state();
    ui_->runSchedule->click();
    is_running_ = false;
    timer_.start();
}

void ScheduleTab::runSchedule_Click()
{
    const QString begun = is_running_ ? last_run_ : date_time_text(desk_->clock());
    SkippedSteps skipped;
    desk_->run(skipped);
    note_skipped(begun, skipped);
}

void ScheduleTab::note_skipped(const QString &begun, const SkippedSteps &skipped)
{
    if (skipped.is_empty())
        return;
    const QString note = skipped_note(begun, skipped);
    desk_->show_note(note);
    QListWidgetItem *line = ui_->List2->item(ui_->List2->count() - 1);
    if (line != nullptr && line->text() == begun)
        line->setToolTip(plain_tool_tip(note));
}

void ScheduleTab::retrieval_finished()
{
    ui_->last_retrieval->setText(date_time_text(desk_->clock()));
}

void ScheduleTab::show_state()
{
    if (is_running_) {
        desk_->show_state(state_while_running(last_run_));
    } else if (!timer_.isActive()) {
        desk_->show_state({});
    } else {
        std::optional<QDateTime> next;
        attempt([&] { next = next_due(plan(), period_start(), desk_->clock()); });
        desk_->show_state(state_until(next, last_run_));
    }
}
