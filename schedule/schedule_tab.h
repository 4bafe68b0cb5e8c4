#pragma once

#include <QWidget>

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

    void wire(EventHandlers &handlers);

private:
    void disable_what_has_no_command();

    std::unique_ptr<Ui::ScheduleTab> ui_;
};
