#pragma once

#include "mail/outgoing_message.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// What makes a message this one and no other.
struct MessageStamp
{
    QDateTime date;
    QString id; // letters and digits, unlike every other message's
};

/// The message as it travels: RFC 5322 and MIME, CR LF line ends, no line over 998 bytes, ASCII but
/// for an address that needs_utf8(). The text goes as UTF-8 text/plain, the attachment as base64
/// under its own name (RFC 2231) and the type that its name and content tell. Blind copies appear
/// nowhere. Line breaks and other control characters in the subject, a name or a file name become
/// blanks: none of them starts a header line.
QByteArray compose_message(const OutgoingMessage &message, const MessageStamp &stamp);
