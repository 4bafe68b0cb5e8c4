#include "mail/log_on_dialog.h"

#include "mail/local_inbox.h"
#include "ui_log_on_dialog.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QPushButton>

namespace
{
class LogOnWindow : public QDialog
{
public:
    LogOnWindow(const QString &reason, QWidget *parent) : QDialog(parent)
    {
        ui_.setupUi(this);
        ui_.reason->setText(reason);
        connect(ui_.path, &QLineEdit::textChanged, this, [this] { judge(); });
        connect(ui_.browse_folder, &QPushButton::clicked, this, [this] { browse_folder(); });
        connect(ui_.browse_file, &QPushButton::clicked, this, [this] { browse_file(); });
        connect(ui_.buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(ui_.buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        judge();
    }

    QString chosen() const { return ui_.path->text(); }

private:
    void judge()
    {
        const LocalInboxKind kind = local_inbox_kind(chosen());
        ui_.buttons->button(QDialogButtonBox::Ok)->setEnabled(kind != LocalInboxKind::None);
        ui_.verdict->setText(
            chosen().isEmpty()                ? QString()
            : kind == LocalInboxKind::None    ? QStringLiteral("There is no inbox at this path.")
            : kind == LocalInboxKind::Maildir ? QStringLiteral("This is a Maildir folder.")
                                              : QStringLiteral("This is read as a mailbox file."));
    }

    void browse_folder() { take(QFileDialog::getExistingDirectory(this, {}, chosen())); }
    void browse_file() { take(QFileDialog::getOpenFileName(this, {}, chosen())); }

    void take(const QString &path)
    {
        if (path.isEmpty())
            return;
        ui_.path->setText(path);
        ui_.path->setFocus();
    }

    Ui::LogOnDialog ui_;
};
} // namespace

std::optional<QString> QtLogOnDialog::choose_inbox(const QString &reason)
{
    if (!attended_())
        return std::nullopt;
    QWidget *active = QApplication::activeWindow();
    LogOnWindow window(reason, active != nullptr ? active : parent_.data());
    return window.exec() == QDialog::Accepted ? std::optional(window.chosen()) : std::nullopt;
}
