#pragma once

#include "mail/mail_way_out.h"

/// The sendmail program to use: `named` (a path, native or in drive notation, or a name in PATH);
/// when that is empty "sendmail". A name is looked for in PATH, then in `folders`.
/// @throws RuntimeError 32000 when there is no such program.
QString find_sendmail(const QString &named,
                      const QStringList &folders = {QStringLiteral("/usr/sbin"),
                                                    QStringLiteral("/usr/lib")});

/// Hands messages to a program with the interface of sendmail. Its arguments are
/// `-i -f SENDER -- RECIPIENT…`, no shell between; it reads no recipient from the header, and gets
/// the message with LF line ends, as local programs write it.
///
/// A program that ends with exit code 0 has taken the message for all recipients of the envelope.
/// The codes of sysexits.h that blame the command, the message, an address or the set-up refuse
/// all, EX_TEMPFAIL (75) for the moment. After any other code nobody knows what went out. A
/// program without a sign of
/// life for ten times the conditions' patience is ended, with all that it started: nobody knows
/// what it did, and it is not run again for the other envelopes.
class SendmailWayOut : public MailWayOut
{
public:
    SendmailWayOut(QString program, NetworkConditions conditions);

    QString name() const override;
    std::vector<RecipientFate> hand_over(const QString &sender, const QStringList &recipients,
                                         const QByteArray &message) override;

private:
    QString program_;
    NetworkConditions conditions_;
};
