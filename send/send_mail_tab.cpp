#include "send/send_mail_tab.h"

#include "db/data_connection.h"
#include "platform/controls.h"
#include "platform/event_handlers.h"
#include "platform/text_file.h"
#include "send/address_file.h"
#include "send/address_list.h"
#include "send/addresses_window.h"
#include "send/group_commands.h"
#include "send/mail_sender.h"
#include "ui_send_mail_tab.h"

#include <QStyle>

SendMailTab::SendMailTab(QWidget *parent)
    : QWidget(parent),
      ui_(std::make_unique<Ui::SendMailTab>())
{
    ui_->setupUi(this);
    ui_->Command46->setIcon(style()->standardIcon(QStyle::SP_ArrowLeft));
    make_primary(*ui_->Command13);
}

SendMailTab::~SendMailTab() = default;

void SendMailTab::wire(EventHandlers &handlers, const SendDesk &desk, const GroupCommands &groups)
{
    desk_ = std::make_unique<SendDesk>(desk);
    sender_ = std::make_unique<MailSender>(
        desk.store, desk.settings, desk.prompts,
        MessageControls{*ui_->Text12, *ui_->Text13, *ui_->Text14, *ui_->Text15, *ui_->Check9},
        desk.progress);
    wire_message(handlers);
    wire_addresses(handlers);
    handlers.on_click(ui_->Command29, [&groups] { groups.Command29_Click(); }); // "Create Group"
}

void SendMailTab::wire_message(EventHandlers &handlers)
{
    handlers.on_click(ui_->Command13, [this] { Command13_Click(); });         // "Send Mail"
    handlers.on_click(ui_->cmdAttachment, [this] { cmdAttachment_Click(); }); // "Attachment"
    handlers.on_click(ui_->Command14, [this] { Command14_Click(); });         // "Refresh"
    handlers.on(ui_->Text12, &TextBox::double_clicked, [this] { Text12_DblClick(); });
}

void SendMailTab::wire_addresses(EventHandlers &handlers)
{
    handlers.on_click(ui_->Check14, [this] { Check14_Click(); });     // "Multiple Recipients"
    handlers.on_click(ui_->Command26, [this] { Command26_Click(); }); // "Show all …"
    handlers.on_click(ui_->Command34, [this] {                        // "Get File"
        load_address_file(desk_->prompts, QLatin1String(address_folder), *ui_->Text12);
    });
    handlers.on_click(ui_->Command46, [this] { Command46_Click(); });
    handlers.on_click(ui_->Command47, [this] { Command47_Click(); }); // "Get File"
    handlers.on(ui_->List1, &QListWidget::itemClicked, [this] { List1_Click(); });
    handlers.on(ui_->List1, &AddressListBox::double_clicked, [this] { List1_DblClick(); });
    handlers.on(ui_->List1, &AddressListBox::enter_pressed, [this] { List1_Click(); });
}

void SendMailTab::Command13_Click()
{
    // Signing on gives the event loop turns: a second click must not send the message twice.
    const ButtonPause pause(*ui_->Command13);
    sender_->Command13_Click();
}

void SendMailTab::cmdAttachment_Click()
{
    const QString path = desk_->prompts.open_file({});
    if (!path.isEmpty())
        ui_->Text15->setText(path);
}

void SendMailTab::Command14_Click()
{
    ui_->Text12->set_text({});
    ui_->Text13->clear();
    ui_->Text14->set_text({});
    ui_->Text15->clear();
    if (desk_->prompts.ok_cancel(QStringLiteral("Is it OK to clear the list too?")))
        ui_->List1->clear();
}

void SendMailTab::Text12_DblClick()
{
    if (!addresses_.isNull())
        addresses_->close();
    addresses_ = new AddressesWindow(ui_->Text12->text(), window());
    addresses_->show();
}

void SendMailTab::Check14_Click()
{
    ui_->Text12->set_text({});
}

void SendMailTab::List1_Click()
{
    const QListWidgetItem *clicked = ui_->List1->currentItem();
    if (clicked == nullptr)
        return;
    if (ui_->Check14->isChecked())
        ui_->Text12->append_text(clicked->text() + QStringLiteral("; "));
    else
        ui_->Text12->set_text(clicked->text());
}

void SendMailTab::List1_DblClick()
{
    load_address_file(desk_->prompts, {}, *ui_->Text12);
}

void SendMailTab::Command26_Click()
{
    // The walk gives the event loop turns: a second click must not start another one inside it.
    const ButtonPause pause(*ui_->Command26);
    DataConnection &Data2 = desk_->Data2;
    do {
        Data2.set_record_source(
            " select distinct email from master where email not like    ''    ");
        Data2.refresh();
        ui_->List1->clear();
    } while (!fill_with_addresses(*ui_->List1, Data2, *ui_->ProgressBar3, desk_->progress));
    Data2.set_record_source(" select * from master");
    Data2.refresh();
    ui_->ProgressBar3->setValue(0);
}

void SendMailTab::Command46_Click()
{
    ui_->Text12->set_text(joined_entries(*ui_->List1));
}

void SendMailTab::Command47_Click()
{
    const QString path =
        desk_->prompts.open_file({QLatin1String(text_file_filter), QLatin1String(address_folder)});
    if (!path.isEmpty())
        ui_->List1->addItems(read_lines(path));
}

TextBox &SendMailTab::Text12() const
{
    return *ui_->Text12;
}

QListWidget &SendMailTab::List1() const
{
    return *ui_->List1;
}

QProgressBar &SendMailTab::ProgressBar3() const
{
    return *ui_->ProgressBar3;
}
