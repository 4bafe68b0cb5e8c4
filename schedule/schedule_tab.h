#pragma once

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class EventHandlers;

namespace Ui
{
class ScheduleTab;
}

/// The tab "Schedule": on which days and how often the retrieval is repeated, and when it was.
class ScheduleTab : public QWidget
{
    Q_OBJECT

public:
    explicit ScheduleTab(QWidget *parent = nullptr);
    ~ScheduleTab() override;

    /// `run_scheduled` is the retrieval that a due tick starts.
    void wire(EventHandlers &handlers, std::function<void()> run_scheduled);

    QTimer &Timer1() { return timer_; }

private:
    void disable_what_has_no_command();

    std::unique_ptr<Ui::ScheduleTab> ui_;
    QTimer timer_;
};
