#include "app/hidden_controls.h"

#include <QLineEdit>
#include <QPushButton>

namespace
{
QPushButton *add_button(QWidget &window, const char *name, const char *caption)
{
    auto *button = new QPushButton(QString::fromLatin1(caption), &window);
    button->setObjectName(QString::fromLatin1(name));
    button->hide();
    return button;
}

QLineEdit *add_line(QWidget &window, const char *name)
{
    auto *line = new QLineEdit(&window);
    line->setObjectName(QString::fromLatin1(name));
    line->hide();
    return line;
}
} // namespace

HiddenControls add_hidden_controls(QWidget &window)
{
    return {
        .Command11 = add_button(window, "Command11", ""),
        .Command22 = add_button(window, "Command22", "delete all incorrect addresses(filter)"),
        .Command23 =
            add_button(window, "Command23", "delete incorrect subject headings from both tables"),
        .Command27 = add_button(window, "Command27", "Command27"),
        .Text8 = add_line(window, "Text8"),
    };
}
