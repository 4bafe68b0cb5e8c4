#include "schedule/up_down.h"

#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionSpinBox>

UpDown::UpDown(QWidget *parent) : QSpinBox(parent)
{
    lineEdit()->hide();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize UpDown::sizeHint() const
{
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    option.rect.setSize(QSpinBox::sizeHint());
    const QRect arrows =
        style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, this);
    return {arrows.width() + 2, option.rect.height()};
}

QSize UpDown::minimumSizeHint() const
{
    return sizeHint();
}
