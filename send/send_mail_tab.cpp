#include "send/send_mail_tab.h"

#include "db/data_connection.h"
#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "send/address_list.h"
#include "ui_send_mail_tab.h"

#include <QStyle>

SendMailTab::SendMailTab(QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::SendMailTab>())
{
    ui_->setupUi(this);
    ui_->Command46->setIcon(style()->standardIcon(QStyle::SP_ArrowLeft));
    make_primary(*ui_->Command13);
    disable_what_has_no_command();
}

SendMailTab::~SendMailTab() = default;

void SendMailTab::disable_what_has_no_command()
{
    disable({ui_->Command13, ui_->cmdAttachment, ui_->Command14, ui_->Command29, ui_->Command34,
             ui_->Command46, ui_->Command47, ui_->Check9, ui_->Check14});
}

void SendMailTab::wire(EventHandlers &handlers, DataConnection &Data2)
{
    handlers.on_click(ui_->Command26, [this, &Data2] { Command26_Click(Data2); }); // "Show all …"
}

void SendMailTab::Command26_Click(DataConnection &Data2)
{
    Data2.set_record_source(" select distinct email from master where email not like    ''    ");
    Data2.refresh();
    ui_->List1->clear();
    fill_with_addresses(*ui_->List1, Data2, *ui_->ProgressBar3);
    Data2.set_record_source(" select * from master");
    Data2.refresh();
    ui_->ProgressBar3->setValue(0);
}

QListWidget &SendMailTab::List1() const
{
    return *ui_->List1;
}

QProgressBar &SendMailTab::ProgressBar3() const
{
    return *ui_->ProgressBar3;
}
