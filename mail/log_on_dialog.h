#pragma once

#include "mail/log_on.h"

#include <QPointer>
#include <QWidget>

#include <functional>

/// The store's log-on dialog as windows ("LogOnDialog", "PasswordDialog").
class QtLogOnDialog : public LogOnDialog
{
public:
    /// Opens the window of the mail profiles; returns the names of those that there are then.
    using ProfileEditor = std::function<QStringList()>;

    /// @param attended  whether a person started the run; when it says no, nothing is shown and
    /// nothing answered.
    explicit QtLogOnDialog(std::function<bool()> attended) : attended_(std::move(attended)) {}

    /// The dialogs open over the active window, else over `parent`.
    void set_parent(QWidget *parent) { parent_ = parent; }
    /// Without an editor the dialog does not offer one.
    void set_profile_editor(ProfileEditor editor) { edit_profiles_ = std::move(editor); }

    std::optional<AccountAnswer> choose_account(const AccountQuestion &question) override;
    std::optional<PasswordAnswer> ask_password(const PasswordQuestion &question) override;

private:
    QWidget *window_parent() const;

    std::function<bool()> attended_;
    ProfileEditor edit_profiles_;
    QPointer<QWidget> parent_;
};
