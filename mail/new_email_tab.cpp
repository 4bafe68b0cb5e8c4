#include "mail/new_email_tab.h"

#include "db/address_lists.h"
#include "db/data_connection.h"
#include "db/list_desk.h"
#include "db/record_set_model.h"
#include "mail/retrieval_run.h"
#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "platform/prompts.h"
#include "ui_new_email_tab.h"

NewEmailTab::NewEmailTab(RecordSetModel &work_table, QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::NewEmailTab>())
{
    ui_->setupUi(this);
    set_up_grid(*ui_->MSFlexGrid1, work_table);
    make_primary(*ui_->Command2);
}

NewEmailTab::~NewEmailTab() = default;

void NewEmailTab::wire(EventHandlers &handlers, const ListDesk &desk, RetrievalRun &run)
{
    DataConnection &Data1 = desk.Data1;
    Prompts &prompts = desk.prompts;
    AddressLists &lists = desk.lists;
    const auto on_click = [&](QPushButton *button, EventHandlers::Handler handler) {
        handlers.on_click(button, std::move(handler));
    };
    on_click(ui_->Command2, [&run] { run.Command2_Click(); });                // "Get Emails"
    on_click(ui_->Command28, [&lists] { lists.Command28_Click(); });          // "Refresh"
    on_click(ui_->Command25, [&, this] { Command25_Click(Data1, prompts); }); // "Search"
    on_click(ui_->Command45, [&] { Command45_Click(Data1, prompts); });       // "Delete All"
}

void NewEmailTab::Command25_Click(DataConnection &Data1, Prompts &prompts)
{
    const QString column = ui_->Combo1->currentText();
    const QString wanted = ui_->Text26->text();
    if (column == QLatin1String("eMail")) {
        Data1.set_record_source(
            Statement("select * from system where email like '*", wanted, "*' "));
    } else if (column == QLatin1String("Subject")) {
        Data1.set_record_source(
            Statement("select * from system where subject like '*", wanted, "*' "));
    } else {
        prompts.notice(QStringLiteral("Please use the drop down list to select a search criteria"));
        return;
    }
    Data1.refresh();
}

void NewEmailTab::Command45_Click(DataConnection &Data1, Prompts &prompts)
{
    if (!prompts.ok_cancel(QLatin1String(delete_all_question)))
        return;
    Data1.execute("delete * from system");
    Data1.refresh();
}

QTableView &NewEmailTab::MSFlexGrid1() const
{
    return *ui_->MSFlexGrid1;
}

QProgressBar &NewEmailTab::ProgressBar1() const
{
    return *ui_->ProgressBar1;
}
