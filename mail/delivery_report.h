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

    /// At most 512 Ki characters, each address with a line end, so that a long list cannot take the
    /// whole text. The first that would be too much ends the list.
    const QStringList &addresses() const { return addresses_; }
    /// How many bytes of addresses came once the list had ended.
    qint64 bytes_left_out() const { return bytes_left_out_; }

private:
    void add_recipient(QByteArrayView block);
    void add_typed(QByteArrayView value);
    void add(QByteArrayView address);

    QStringList addresses_;
    QSet<QString> known_;
    qsizetype size_ = 0;
    bool is_full_ = false;
    qint64 bytes_left_out_ = 0;
};
