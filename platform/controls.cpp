#include "platform/controls.h"

#include <QDialog>
#include <QGuiApplication>
#include <QPalette>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>

void disable(std::initializer_list<QWidget *> controls)
{
    for (QWidget *control : controls)
        control->setEnabled(false);
}

void make_primary(QPushButton &button)
{
    QPalette colours = button.palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        // Darker: the style paints a button lighter than its colour, and the caption must be read.
        const QColor accent = colours.color(group, QPalette::Highlight).darker(150);
        colours.setColor(group, QPalette::Button, accent);
        colours.setColor(group, QPalette::ButtonText,
                         colours.color(group, QPalette::HighlightedText));
    }
    button.setPalette(colours);
    QFont font = button.font();
    font.setBold(true);
    button.setFont(font);
    button.setMinimumWidth(button.sizeHint().width() + 24);
}

ButtonPause::ButtonPause(QPushButton &button) : button_(button), had_focus_(button.hasFocus())
{
    button_.setEnabled(false);
}

ButtonPause::~ButtonPause()
{
    QTimer::singleShot(0, &button_, [button = &button_, had_focus = had_focus_] {
        button->setEnabled(true);
        if (had_focus)
            button->setFocus();
    });
}

int exec_with_arrow(QDialog &dialog)
{
    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    const auto done = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
    return dialog.exec();
}
