#include "schedule/up_down.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionSpinBox>

UpDown::UpDown(QWidget *parent) : QSpinBox(parent)
{
    lineEdit()->hide();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void UpDown::set_buddy(QLineEdit &box)
{
    connect(this, &QSpinBox::valueChanged, &box,
            [&box](int value) { box.setText(QString::number(value)); });
    connect(&box, &QLineEdit::textChanged, this, [this](const QString &text) {
        bool is_number = false;
        const int typed = text.toInt(&is_number);
        const QSignalBlocker quiet(this);
        if (is_number)
            setValue(typed);
    });
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
