#include "send/addresses_window.h"

#include "platform/long_text_box.h"

#include <QDialogButtonBox>
#include <QVBoxLayout>

AddressesWindow::AddressesWindow(const QString &addresses, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmeMailAddresses"));
    setWindowTitle(QStringLiteral("Addresses"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto *text = new LongTextBox(this);
    text->setObjectName(QStringLiteral("addresses_text"));
    text->setAccessibleName(QStringLiteral("Addresses"));
    text->setReadOnly(true);
    text->set_text(addresses);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(buttons);
    resize(560, 420);
}
