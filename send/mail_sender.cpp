#include "send/mail_sender.h"

#include "app/settings_store.h"
#include "mail/mail_store.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "platform/text_box.h"
#include "platform/words.h"
#include "send/recipients.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScopeGuard>
#include <QThread>

MailSender::MailSender(MailStore &store, const SettingsStore &settings, Prompts &prompts,
                       const MessageControls &controls, ProgressReport &progress)
    : store_(store),
      settings_(settings),
      prompts_(prompts),
      controls_(controls),
      progress_(progress)
{
}

void MailSender::Command13_Click() const
{
    const QString box = controls_.Text12.text();
    if (box.isEmpty()) {
        prompts_.notice(
            QStringLiteral(" You must have at least one valid address in the Address Box"));
        return;
    }
    const QString addresses = trim_blanks(box);
    if (!addresses.isEmpty())
        send(addresses);
    store_.messages().Copy();
}

void MailSender::send(const QString &addresses) const
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto done = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
    sign_on();
    constexpr int compose_buffer = -1;
    MessageSet &messages = store_.messages();
    messages.set_MsgIndex(compose_buffer);
    messages.set_SessionID(store_.session().SessionID());
    const int recipients = add_recipients(addresses);
    if (recipients > 0)
        send_message(recipients);
}

void MailSender::sign_on() const
{
    MailSession &session = store_.session();
    // In small letters, unlike everywhere else: the store takes both for the same key.
    const QString profile = settings_.read(QStringLiteral("pendral"), QStringLiteral("eapp"),
                                           QStringLiteral("profile"), {});
    if (!profile.isEmpty())
        session.set_UserName(profile);
    session.set_DownLoadMail(false);
    session.SignOn();
    while (session.SessionID() == 0) {
        QCoreApplication::processEvents();
        QThread::msleep(1); // nothing is gained by asking more often
    }
}

int MailSender::add_recipients(const QString &addresses) const
{
    constexpr int to = 1;
    constexpr int blind_copy = 3;
    MessageSet &messages = store_.messages();
    int counter = 0;
    const QStringList recipients = split_recipients(addresses);
    for (const QString &recipient : recipients) {
        messages.set_RecipIndex(counter);
        messages.set_RecipType(counter == 0 ? to : blind_copy);
        messages.set_RecipAddress(recipient);
        messages.ResolveName();
        counter = as_integer16(counter + 1);
    }
    return counter;
}

void MailSender::send_message(int recipients) const
{
    MessageSet &messages = store_.messages();
    messages.set_MsgSubject(controls_.Text13.text());
    messages.set_MsgNoteText(controls_.Text14.text());
    if (!controls_.Text15.text().isEmpty())
        messages.set_AttachmentPathName(controls_.Text15.text());
    messages.Send(controls_.Check9.isChecked());
    store_.session().SignOff();
    progress_.note(
        recipients == 1
            ? QStringLiteral("The message has been handed over for one recipient")
            : QStringLiteral("The message has been handed over for %1 recipients").arg(recipients));
}
