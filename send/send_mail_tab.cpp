#include "send/send_mail_tab.h"

#include "platform/controls.h"
#include "platform/event_handlers.h"
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
    disable({ui_->Command26});
}

void SendMailTab::wire(EventHandlers & /*handlers*/) {}

QListWidget &SendMailTab::List1() const
{
    return *ui_->List1;
}

QProgressBar &SendMailTab::ProgressBar3() const
{
    return *ui_->ProgressBar3;
}
