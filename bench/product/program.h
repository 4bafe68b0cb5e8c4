#pragma once

#include "app/main_window.h"
#include "app/settings_store.h"
#include "bench/product/answering_prompts.h"
#include "mail/user_mail.h"

#include <QApplication>

/// The program as its user has it before the first click: the real window on the home that HOME and
/// the XDG folders name, painted, with a person who answers every box at once.
class Program
{
public:
    Program(int &argc, char **argv);

    MainWindow &window() { return window_; }

    /// Presses the button or the menu entry with this name; returns when the command has ended and
    /// all is painted.
    /// @throws std::runtime_error when there is none or it is disabled.
    void press(const char *name);

    /// Closes the window as a person does. @return the process's exit code: 1 after any notice.
    int close();

private:
    /// The style is chosen before there is an application, as in the program.
    struct Style
    {
        Style();
    };

    Style style_;
    QApplication application_;
    SettingsStore settings_;
    AnsweringPrompts prompts_;
    UserMail mail_;
    MainWindow window_;
};
