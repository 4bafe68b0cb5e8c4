#include "app/hidden_buttons.h"

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
} // namespace

HiddenButtons add_hidden_buttons(QWidget &window)
{
    const HiddenButtons buttons{
        .Command11 = add_button(window, "Command11", ""),
        .Command22 = add_button(window, "Command22", "delete all incorrect addresses(filter)"),
        .Command23 =
            add_button(window, "Command23", "delete incorrect subject headings from both tables"),
        .Command27 = add_button(window, "Command27", "Command27"),
    };
    return buttons;
}
