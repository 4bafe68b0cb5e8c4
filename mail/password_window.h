#pragma once

#include "mail/log_on.h"

#include <QDialog>

namespace Ui
{
class PasswordDialog;
}

/// Asks for a server's password (its objectName is "PasswordDialog"). To remember it can be chosen
/// only when a keychain answers. OK can be pressed once something is typed.
class PasswordWindow : public QDialog
{
    Q_OBJECT

public:
    PasswordWindow(const PasswordQuestion &question, QWidget *parent);
    ~PasswordWindow() override;

    PasswordAnswer answer() const;

private:
    std::unique_ptr<Ui::PasswordDialog> ui_;
};
