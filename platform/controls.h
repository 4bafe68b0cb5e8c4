#pragma once

#include <initializer_list>

class QDialog;
class QPushButton;
class QWidget;

/// Greys out controls that have no command yet.
void disable(std::initializer_list<QWidget *> controls);

/// While it lives a button cannot be pressed, nor by the clicks that came meanwhile and are
/// delivered afterwards; then it has the keyboard focus again if it had it.
class ButtonPause
{
public:
    explicit ButtonPause(QPushButton &button);
    ~ButtonPause();
    ButtonPause(const ButtonPause &) = delete;
    ButtonPause &operator=(const ButtonPause &) = delete;

private:
    QPushButton &button_;
    bool had_focus_;
};

/// Runs a dialog with the arrow as mouse pointer, whatever the work around it shows.
/// @return as QDialog::exec().
int exec_with_arrow(QDialog &dialog);

/// Marks the button that a tab is there for, in the desktop's own accent colour.
void make_primary(QPushButton &button);
