#include "send/groups_tab.h"

#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "send/address_file.h"
#include "send/group_commands.h"
#include "ui_groups_tab.h"

GroupsTab::GroupsTab(QWidget *parent) : QWidget(parent), ui_(std::make_unique<Ui::GroupsTab>())
{
    ui_->setupUi(this);
    make_primary(*ui_->cmdMkGroups);
}

GroupsTab::~GroupsTab() = default;

void GroupsTab::wire(EventHandlers &handlers, const GroupCommands &groups, Prompts &prompts)
{
    const auto on_click = [&](QPushButton *button, EventHandlers::Handler handler) {
        handlers.on_click(button, std::move(handler));
    };
    on_click(ui_->cmdMkGroups, [&groups] { groups.cmdMkGroups_Click(); }); // "Make Group"
    on_click(ui_->Command69, [&groups] { groups.Command69_Click(); });     // "Add ALL …"
    on_click(ui_->Command30, [&groups] { groups.Command30_Click(); });     // "Make a text file …"
    on_click(ui_->Command41, [&groups] { groups.Command41_Click(); });     // "Make smaller groups"
    on_click(ui_->cmdUpdateToDB, [&groups] { groups.cmdUpdateToDB_Click(); }); // "Update"
    on_click(ui_->cmdGetFile, [this, &prompts] {                               // "Get File"
        load_address_file(prompts, {}, *ui_->RichTextBox1);
    });
}

QComboBox &GroupsTab::Combo2() const
{
    return *ui_->Combo2;
}

QLineEdit &GroupsTab::Text4() const
{
    return *ui_->Text4;
}

QLineEdit &GroupsTab::Text30() const
{
    return *ui_->Text30;
}

TextBox &GroupsTab::RichTextBox1() const
{
    return *ui_->RichTextBox1;
}

QProgressBar &GroupsTab::ProgressBar2() const
{
    return *ui_->ProgressBar2;
}
