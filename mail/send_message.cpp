#include "mail/send_message.h"

#include "mail/compose_message.h"
#include "mail/delivery_fates.h"
#include "mail/local_sender.h"
#include "mail/sign_in_refused.h"
#include "platform/runtime_error.h"

#include <QUuid>

namespace
{
void review(const OutgoingMessage &message, const QString &way_out, SendDialog &dialog)
{
    switch (dialog.review(message, way_out)) {
    case SendAnswer::Send:
        return;
    case SendAnswer::Cancel:
        throw RuntimeError(
            error_number::sending_cancelled,
            QStringLiteral("The message was cancelled by the user. Nothing was sent."));
    case SendAnswer::Nobody:
        throw RuntimeError(
            error_number::mail_failure,
            QStringLiteral("The message was to be shown before it is sent, but nobody "
                           "is there to see it. Nothing was sent."));
    }
}

std::vector<RecipientFate> hand_over(MailWayOut &way_out, const SendingAccount &account,
                                     const OutgoingMessage &message, const QByteArray &bytes)
{
    for (;;) {
        try {
            auto fates = way_out.hand_over(message.sender.address, message.recipients(), bytes);
            account.accepted();
            return fates;
        } catch (const SignInRefused &refusal) {
            if (!account.ask_again(refusal.description()))
                throw;
        }
    }
}

QString new_id()
{
    return QUuid::createUuid().toString(QUuid::Id128);
}
} // namespace

void send_message(const ComposeBuffer &draft, const SendingAccount &account,
                  const SendingConditions &conditions, SendDialog *dialog)
{
    const OutgoingMessage message = draft.message(sender_of(account.profile));
    const auto way_out = open_way_out(account.profile, account.credentials, conditions.network);
    if (dialog != nullptr)
        review(message, way_out->name(), *dialog);
    const QByteArray bytes = compose_message(message, {conditions.clock(), new_id()});
    const QString complaint = undelivered(hand_over(*way_out, account, message, bytes));
    if (!complaint.isEmpty())
        throw RuntimeError(error_number::mail_failure, complaint);
}
