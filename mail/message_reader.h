#pragma once

#include "mail/message_fields.h"

#include <QByteArray>
#include <QDateTime>

/// A message as an inbox hands it over.
struct RawMessage
{
    QByteArray bytes;
    /// When the message arrived; stands in for a Date that is missing or cannot be read.
    QDateTime arrived;
    /// How many bytes behind `bytes` the inbox did not read.
    qint64 bytes_left_out = 0;
};

/// Reads the five fields of an Internet message (RFC 5322), however broken: never throws for what
/// the message holds, and costs one pass over it.
///
/// Sender: the first mailbox of From, else of Sender. Of repeated fields the first one counts. The
/// text is the first text part as readable text; a delivery notice's text goes on with the
/// recipients that it reports as failed, one a line; an enclosed message is never part of it.
///
/// Limits: text 1 Mi UTF-16 units, other fields 64 Ki, 50 levels, 1,000 parts. The text's last line
/// tells what was left out.
MessageFields read_message(RawMessage message);
