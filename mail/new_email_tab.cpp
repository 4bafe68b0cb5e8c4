#include "mail/new_email_tab.h"

#include "db/record_set_model.h"
#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "ui_new_email_tab.h"

NewEmailTab::NewEmailTab(RecordSetModel &work_table, QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::NewEmailTab>())
{
    ui_->setupUi(this);
    set_up_grid(*ui_->MSFlexGrid1, work_table);
    make_primary(*ui_->Command2);
    disable_what_has_no_command();
}

NewEmailTab::~NewEmailTab() = default;

void NewEmailTab::disable_what_has_no_command()
{
    disable({ui_->Command2, ui_->Command25, ui_->Command28, ui_->Command45});
}

void NewEmailTab::wire(EventHandlers & /*handlers*/) {}

QTableView &NewEmailTab::MSFlexGrid1() const
{
    return *ui_->MSFlexGrid1;
}

QProgressBar &NewEmailTab::ProgressBar1() const
{
    return *ui_->ProgressBar1;
}
