#pragma once

#include <QListWidget>

/// The list that addresses are picked from, with signals of its own: a view's signal for the Enter
/// key comes with a double click too, and its signal for a double click only on an entry.
class AddressListBox : public QListWidget
{
    Q_OBJECT

public:
    using QListWidget::QListWidget;

Q_SIGNALS:
    void enter_pressed();
    void double_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
};
