#pragma once

#include "tests/support/program_window.h"

#include <QObject>

/// Sees whether "Please Wait!" was shown.
class PleaseWaitWatch : public QObject
{
public:
    PleaseWaitWatch();

    int shown() const { return shown_; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int shown_ = 0;
};

/// The text manipulator, opened from the main window's menu when first asked for.
class ManipulatorWindow : public ProgramWindow
{
protected:
    QWidget &manipulator();
    bool manipulator_is_open() { return window().findChild<QWidget *>("TextManipulator"); }

    /// A control of the manipulator; those of the main window have the same names.
    template <typename Control>
    Control &tool(const QString &name)
    {
        auto *found = manipulator().findChild<Control *>(name);
        if (found == nullptr)
            throw std::runtime_error("the manipulator has no control " + name.toStdString());
        return *found;
    }

    /// A click with the mouse on a button.
    void press(const QString &button);
    /// Opens the File menu and clicks on an entry.
    void pick(const QString &entry);
    /// Empties a box of one line and types into it.
    void enter(const QString &box, const QString &typed);

    QString box_text(const QString &box);
    void set_box_text(const QString &box, const QString &text);
    QStringList table();

    /// "Remove  lines that do not contain" on a file, with its boxes.
    void remove_lines(const QString &file);
    bool please_wait_is_open() { return window().findChild<QWidget *>("PleaseWait") != nullptr; }
    /// What a failed import leaves.
    void leave_please_wait_open();

    /// Actions that end the program with this run-time error. No window may be open before.
    template <typename Actions>
    void expect_end(Actions actions, int number)
    {
        const auto end = [&] {
            actions();
            FAIL() << "the program goes on";
        };
        EXPECT_EXIT(end(), testing::ExitedWithCode(1),
                    "Run-time error '" + std::to_string(number) + "'");
    }

public:
    static const QString large_files;
    static const QString put_into_format;
    static const QString only_from_a_file;
    static const QString some_character;
    static const QString delete_all;
};
