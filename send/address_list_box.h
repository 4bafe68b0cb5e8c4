#pragma once

#include <QListWidget>

/// The list that addresses are picked from, with a signal of its own for the Enter key: a view's own
/// signal for it comes with a double click too.
class AddressListBox : public QListWidget
{
    Q_OBJECT

public:
    using QListWidget::QListWidget;

Q_SIGNALS:
    void enter_pressed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
