#include "mail/send_dialog.h"

#include "mail/recipient.h"
#include "mail/text_shape.h"
#include "platform/controls.h"
#include "ui_send_dialog.h"

#include <QApplication>
#include <QDialog>
#include <QLocale>
#include <QPushButton>
#include <QScopeGuard>
#include <QStringListModel>

namespace
{
QString sender_line(const Mailbox &sender)
{
    const QString name = as_one_line(sender.name);
    return name.isEmpty() ? sender.address : QStringLiteral("%1 <%2>").arg(name, sender.address);
}

QString attachment_line(const OutgoingMessage &message)
{
    if (!message.attachment)
        return QStringLiteral("none");
    const Attachment &attachment = *message.attachment;
    return QStringLiteral("%1 (%2), from %3")
        .arg(harmless_text(attachment.name),
             QLocale(QLocale::English)
                 .formattedDataSize(attachment.content.size(), 1, QLocale::DataSizeSIFormat),
             harmless_text(attachment.path));
}

QString blind_copies_label(qsizetype count)
{
    return QStringLiteral("&Blind copies (%1):").arg(QLocale(QLocale::English).toString(count));
}

class SendWindow : public QDialog
{
public:
    SendWindow(const OutgoingMessage &message, const QString &way_out, QWidget *parent)
        : QDialog(parent),
          blind_copies_(message.blind_copies)
    {
        ui_.setupUi(this);
        ui_.from->setText(sender_line(message.sender));
        ui_.to->setText(message.to.isEmpty() ? QStringLiteral("nobody to be seen")
                                             : message.to.join(QStringLiteral(", ")));
        ui_.subject->setText(as_one_line(message.subject));
        ui_.text->setPlainText(message.text);
        ui_.attachment->setText(attachment_line(message));
        ui_.way_out->setText(way_out);
        ui_.blind_copies->setModel(&blind_copies_);
        ui_.blind_copies_label->setText(blind_copies_label(message.blind_copies.size()));
        show_blind_copies(!message.blind_copies.isEmpty());
        set_up_buttons();
    }

private:
    void show_blind_copies(bool are_there)
    {
        ui_.blind_copies->setVisible(are_there);
        ui_.blind_copies_label->setVisible(are_there);
    }

    void set_up_buttons()
    {
        QPushButton *send = ui_.buttons->button(QDialogButtonBox::Ok);
        send->setText(QStringLiteral("&Send"));
        send->setDefault(true);
        send->setFocus();
        connect(ui_.buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(ui_.buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    }

    QStringListModel blind_copies_;
    Ui::SendDialog ui_;
};
} // namespace

SendAnswer QtSendDialog::review(const OutgoingMessage &message, const QString &way_out)
{
    if (!attended_())
        return SendAnswer::Nobody;
    QWidget *active = QApplication::activeWindow();
    // Whoever sends shows that it is busy; here the person is waited for.
    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    const auto busy_again = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
    SendWindow window(message, way_out, active != nullptr ? active : parent_.data());
    return exec_with_arrow(window) == QDialog::Accepted ? SendAnswer::Send : SendAnswer::Cancel;
}
