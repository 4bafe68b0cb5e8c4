#pragma once

#include <QByteArrayView>
#include <QSet>
#include <QString>
#include <QStringList>

/// The recipients that a notice reports as failed, in its order, each once.
class FailedRecipients
{
public:
    /// Takes the failed recipients of a message/delivery-status part (RFC 3464): per recipient with
    /// "Action: failed" the Final-Recipient's address and, where it is another one, the
    /// Original-Recipient's, which is the address that was written to.
    void add_status(QByteArrayView part);

    /// Takes an X-Failed-Recipients value: addresses separated by commas.
    void add_list(QByteArrayView value);

    const QStringList &addresses() const { return addresses_; }

private:
    void add_recipient(QByteArrayView block);
    void add_typed(QByteArrayView value);
    void add(QByteArrayView address);

    QStringList addresses_;
    QSet<QString> known_;
};
