#include "send/address_list_box.h"

#include <QKeyEvent>

void AddressListBox::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QListWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    Q_EMIT enter_pressed();
}

void AddressListBox::mouseDoubleClickEvent(QMouseEvent *event)
{
    QListWidget::mouseDoubleClickEvent(event);
    Q_EMIT double_clicked();
}
