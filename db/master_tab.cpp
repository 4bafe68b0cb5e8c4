#include "db/master_tab.h"

#include "db/large_screen.h"
#include "db/record_set_model.h"
#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "ui_master_tab.h"

MasterTab::MasterTab(RecordSetModel &master, QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::MasterTab>()),
      master_(master)
{
    ui_->setupUi(this);
    set_up_grid(*ui_->MSFlexGrid5, master_);
    disable_what_has_no_command();
}

MasterTab::~MasterTab() = default;

void MasterTab::disable_what_has_no_command()
{
    disable({ui_->Command19, ui_->Command37});
    disable({ui_->Command20, ui_->Command21, ui_->Command33, ui_->Command36, ui_->Command42,
             ui_->Command43, ui_->Command44, ui_->cmdADD});
}

void MasterTab::wire(EventHandlers &handlers)
{
    handlers.on_click(ui_->cmdLargeScreen, [this] { cmdLargeScreen_Click(); }); // "View Large …"
}

void MasterTab::cmdLargeScreen_Click()
{
    if (large_screen_.isNull())
        large_screen_ = new LargeScreen(master_, window());
    large_screen_->showMaximized();
    large_screen_->activateWindow();
}

QLineEdit &MasterTab::Text1() const
{
    return *ui_->Text1;
}

QLineEdit &MasterTab::Text2() const
{
    return *ui_->Text2;
}

QLineEdit &MasterTab::Text7() const
{
    return *ui_->Text7;
}

QLineEdit &MasterTab::Text16() const
{
    return *ui_->Text16;
}

QLineEdit &MasterTab::Text23() const
{
    return *ui_->Text23;
}

QTableView &MasterTab::MSFlexGrid5() const
{
    return *ui_->MSFlexGrid5;
}
