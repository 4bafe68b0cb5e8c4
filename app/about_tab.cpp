#include "app/about_tab.h"

#include "mail/parser_try_out.h"
#include "platform/event_handlers.h"
#include "ui_about_tab.h"

#include <QIcon>

AboutTab::AboutTab(QWidget *parent) : QWidget(parent), ui_(std::make_unique<Ui::AboutTab>())
{
    ui_->setupUi(this);
    ui_->about_icon->setPixmap(QIcon(QStringLiteral(":/icons/ostrix.png")).pixmap(96));
}

AboutTab::~AboutTab() = default;

void AboutTab::wire(EventHandlers &handlers, const ParserTryOut &try_out)
{
    handlers.on_click(ui_->Command31, [&] { try_out.Command31_Click(); }); // "test grab …"
    handlers.on_click(ui_->Command32, [&] { try_out.Command32_Click(); }); // "parse function"
}

QLineEdit &AboutTab::Text31() const
{
    return *ui_->Text31;
}

QLineEdit &AboutTab::Text32() const
{
    return *ui_->Text32;
}

QLineEdit &AboutTab::Text33() const
{
    return *ui_->Text33;
}

QLineEdit &AboutTab::Text34() const
{
    return *ui_->Text34;
}

TextBox &AboutTab::Text35() const
{
    return *ui_->Text35;
}

TextBox &AboutTab::RichTextBox2() const
{
    return *ui_->RichTextBox2;
}
