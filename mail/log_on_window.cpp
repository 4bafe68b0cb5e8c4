#include "mail/log_on_window.h"

#include "mail/local_inbox.h"
#include "ui_log_on_dialog.h"

#include <QFileDialog>
#include <QPushButton>

LogOnWindow::LogOnWindow(const AccountQuestion &question,
                         QtLogOnDialog::ProfileEditor edit_profiles, QWidget *parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::LogOnDialog>()),
      edit_profiles_(std::move(edit_profiles))
{
    ui_->setupUi(this);
    ui_->reason->setText(question.reason);
    ui_->use_inbox->setVisible(question.takes_inbox);
    ui_->inbox->setVisible(question.takes_inbox);
    ui_->edit_profiles->setVisible(edit_profiles_ != nullptr);
    wire();
    offer(question.profiles);
    const bool takes_profile = !question.profiles.isEmpty() || !question.takes_inbox;
    (takes_profile ? ui_->use_profile : ui_->use_inbox)->setChecked(true);
    judge();
    (takes_profile ? static_cast<QWidget *>(ui_->profiles) : ui_->path)->setFocus();
}

LogOnWindow::~LogOnWindow() = default;

void LogOnWindow::wire()
{
    connect(ui_->use_profile, &QRadioButton::toggled, this, [this] { judge(); });
    connect(ui_->profiles, &QComboBox::activated, this,
            [this] { ui_->use_profile->setChecked(true); });
    connect(ui_->edit_profiles, &QPushButton::clicked, this, [this] { offer(edit_profiles_()); });
    connect(ui_->path, &QLineEdit::textChanged, this, [this] {
        ui_->use_inbox->setChecked(true);
        judge();
    });
    connect(ui_->browse_folder, &QPushButton::clicked, this, [this] { browse_folder(); });
    connect(ui_->browse_file, &QPushButton::clicked, this, [this] { browse_file(); });
    connect(ui_->buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(ui_->buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void LogOnWindow::offer(const QStringList &profiles)
{
    const QString chosen = ui_->profiles->currentText();
    ui_->profiles->clear();
    ui_->profiles->addItems(profiles);
    ui_->profiles->setCurrentText(chosen);
    const bool any = !profiles.isEmpty();
    ui_->profiles->setEnabled(any);
    ui_->use_profile->setEnabled(any);
    judge();
}

void LogOnWindow::judge()
{
    const QString path = ui_->path->text();
    const LocalInboxKind kind = local_inbox_kind(path);
    const bool is_answered =
        ui_->use_profile->isChecked() ? ui_->profiles->count() > 0 : kind != LocalInboxKind::None;
    ui_->buttons->button(QDialogButtonBox::Ok)->setEnabled(is_answered);
    ui_->verdict->setText(
        path.isEmpty()                    ? QString()
        : kind == LocalInboxKind::None    ? QStringLiteral("There is no inbox at this path.")
        : kind == LocalInboxKind::Maildir ? QStringLiteral("This is a Maildir folder.")
                                          : QStringLiteral("This is read as a mailbox file."));
}

void LogOnWindow::browse_folder()
{
    take(QFileDialog::getExistingDirectory(this, {}, ui_->path->text()));
}

void LogOnWindow::browse_file()
{
    take(QFileDialog::getOpenFileName(this, {}, ui_->path->text()));
}

void LogOnWindow::take(const QString &path)
{
    if (path.isEmpty())
        return;
    ui_->path->setText(path);
    ui_->path->setFocus();
}

AccountAnswer LogOnWindow::answer() const
{
    if (ui_->use_profile->isChecked())
        return {ui_->profiles->currentText(), {}};
    return {{}, ui_->path->text()};
}
