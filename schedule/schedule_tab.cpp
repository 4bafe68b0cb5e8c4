#include "schedule/schedule_tab.h"

#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "ui_schedule_tab.h"

ScheduleTab::ScheduleTab(QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::ScheduleTab>())
{
    ui_->setupUi(this);
    ui_->runSchedule->hide();
    timer_.setObjectName(QStringLiteral("Timer1"));
    timer_.setInterval(60000); // milliseconds
    make_primary(*ui_->Command15);
    disable_what_has_no_command();
}

ScheduleTab::~ScheduleTab() = default;

void ScheduleTab::disable_what_has_no_command()
{
    disable({ui_->Command15, ui_->Command16, ui_->Command17});
    disable({ui_->Check1, ui_->Check2, ui_->Check3, ui_->Check4, ui_->Check5, ui_->Check6,
             ui_->Check7, ui_->Check8});
    disable({ui_->UpDown1, ui_->UpDown2});
}

void ScheduleTab::wire(EventHandlers &handlers, std::function<void()> run_scheduled)
{
    handlers.on_click(ui_->runSchedule, std::move(run_scheduled));
}
