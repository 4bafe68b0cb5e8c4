#include "mail/password_window.h"

#include "ui_password_dialog.h"

#include <QPushButton>

PasswordWindow::PasswordWindow(const PasswordQuestion &question, QWidget *parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::PasswordDialog>())
{
    ui_->setupUi(this);
    ui_->reason->setText(question.reason);
    ui_->password_label->setText(QStringLiteral("Password of %1:").arg(question.server));
    ui_->remember->setVisible(question.can_remember);
    ui_->not_remembered->setVisible(!question.can_remember);
    QPushButton *ok = ui_->buttons->button(QDialogButtonBox::Ok);
    ok->setEnabled(false);
    connect(ui_->password, &QLineEdit::textChanged, ok,
            [ok](const QString &typed) { ok->setEnabled(!typed.isEmpty()); });
    connect(ui_->buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(ui_->buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    ui_->password->setFocus();
}

PasswordWindow::~PasswordWindow() = default;

PasswordAnswer PasswordWindow::answer() const
{
    return {ui_->password->text(), ui_->remember->isChecked()};
}
