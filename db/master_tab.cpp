#include "db/master_tab.h"

#include "db/address_lists.h"
#include "db/large_screen.h"
#include "db/master_list_commands.h"
#include "db/record_set_model.h"
#include "platform/event_handlers.h"
#include "ui_master_tab.h"

#include <QItemSelectionModel>

MasterTab::MasterTab(RecordSetModel &master, QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::MasterTab>()),
      master_(master)
{
    ui_->setupUi(this);
    set_up_grid(*ui_->MSFlexGrid5, master_);
}

MasterTab::~MasterTab() = default;

void MasterTab::wire(EventHandlers &handlers, const ListDesk &desk, MasterSearches searches)
{
    commands_ = std::make_unique<MasterListCommands>(
        desk,
        MasterListControls{*ui_->Text1, *ui_->Text2, *ui_->Text7, *ui_->cmdADD, *ui_->MSFlexGrid5});
    AddressLists &lists = desk.lists;
    const auto on_click = [&](QPushButton *button, EventHandlers::Handler handler) {
        handlers.on_click(button, std::move(handler));
    };
    on_click(ui_->Command20, [&lists] { lists.Command20_Click(); });    // "Refresh"
    on_click(ui_->Command44, [&lists] { lists.Command11_Click(); });    // "Add To Master"
    on_click(ui_->cmdADD, [this] { commands_->cmdADD_Click(); });       // "Add"
    on_click(ui_->Command21, [this] { commands_->Command21_Click(); }); // "Change"
    on_click(ui_->Command43, [this] { commands_->Command43_Click(); }); // "Delete A Record"
    on_click(ui_->Command42, [this] { commands_->Command42_Click(); }); // "Delete All Records"
    on_click(ui_->Command33, [this] { commands_->Command33_Click(); }); // "Sort"
    on_click(ui_->Command36, [this] { commands_->Command36_Click(); }); // "Count"
    on_click(ui_->cmdLargeScreen, [this] { cmdLargeScreen_Click(); });  // "View Large Screen"
    on_click(ui_->Command19, std::move(searches.Command19_Click));      // "Search Email"
    on_click(ui_->Command37, std::move(searches.Command37_Click));      // "Search Name"
    wire_row_selection(handlers);
}

// A click, or the keyboard: a row that a command makes the current one fills no boxes, nor does the
// one that the Tab key makes current.
void MasterTab::wire_row_selection(EventHandlers &handlers)
{
    QTableView *grid = ui_->MSFlexGrid5;
    handlers.on(grid, &QTableView::clicked, [this] { commands_->MSFlexGrid5_SelChange(); });
    handlers.on(grid->selectionModel(), &QItemSelectionModel::selectionChanged, [this, grid] {
        if (grid->hasFocus())
            commands_->MSFlexGrid5_SelChange();
    });
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
