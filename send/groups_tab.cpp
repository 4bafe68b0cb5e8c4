#include "send/groups_tab.h"

#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "ui_groups_tab.h"

GroupsTab::GroupsTab(QWidget *parent) : QWidget(parent), ui_(std::make_unique<Ui::GroupsTab>())
{
    ui_->setupUi(this);
    make_primary(*ui_->cmdMkGroups);
    disable_what_has_no_command();
}

GroupsTab::~GroupsTab() = default;

void GroupsTab::disable_what_has_no_command()
{
    disable({ui_->cmdMkGroups, ui_->cmdUpdateToDB, ui_->cmdGetFile, ui_->Command69, ui_->Command30,
             ui_->Command41});
}

void GroupsTab::wire(EventHandlers & /*handlers*/) {}

TextBox &GroupsTab::RichTextBox1() const
{
    return *ui_->RichTextBox1;
}

QProgressBar &GroupsTab::ProgressBar2() const
{
    return *ui_->ProgressBar2;
}
