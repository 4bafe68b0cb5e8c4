#pragma once

#include "mail/mailbox_field.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// A file that goes with a message.
struct Attachment
{
    QString path; // as it was given
    QString name; // the file's own
    QByteArray content;
};

/// A message on its way out. Its addresses are resolved ones (resolve_recipient()).
struct OutgoingMessage
{
    Mailbox sender;
    QStringList to;           // in the header, for everybody to see
    QStringList blind_copies; // in no header
    QString subject;
    QString text;
    std::optional<Attachment> attachment;

    /// Everybody who gets it, each once, in order.
    QStringList recipients() const;
};
