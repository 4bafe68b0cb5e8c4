#include "mail/log_on_dialog.h"

#include "mail/log_on_window.h"
#include "mail/password_window.h"
#include "platform/controls.h"

#include <QApplication>

QWidget *QtLogOnDialog::window_parent() const
{
    QWidget *active = QApplication::activeWindow();
    return active != nullptr ? active : parent_.data();
}

std::optional<AccountAnswer> QtLogOnDialog::choose_account(const AccountQuestion &question)
{
    if (!attended_())
        return std::nullopt;
    LogOnWindow window(question, edit_profiles_, window_parent());
    return exec_with_arrow(window) == QDialog::Accepted ? std::optional(window.answer())
                                                        : std::nullopt;
}

std::optional<PasswordAnswer> QtLogOnDialog::ask_password(const PasswordQuestion &question)
{
    if (!attended_())
        return std::nullopt;
    PasswordWindow window(question, window_parent());
    return exec_with_arrow(window) == QDialog::Accepted ? std::optional(window.answer())
                                                        : std::nullopt;
}
