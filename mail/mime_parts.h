#pragma once

#include <QByteArray>
#include <QList>

/// What a message's MIME structure holds for its text.
struct MimeParts
{
    /// The chosen text part without its transfer encoding, in `charset` (a label, perhaps empty).
    QByteArray text;
    QByteArray charset;
    bool is_html = false;
    /// The message/delivery-status parts without their transfer encoding.
    QList<QByteArray> delivery_status;
    /// How many encoded bytes of the text part were left out because it is too long.
    qint64 bytes_left_out = 0;
    /// Whether there are parts beyond 50 levels or behind the 1,000th, which were not looked at, or
    /// a text round a wrapped report.
    bool has_unread_parts = false;
    /// Whether the message has content, but none that is shown.
    bool has_no_text = false;
};

/// Reads the structure (RFC 2045, RFC 2046). The text is the first text/plain part that is no
/// attachment, else the first text/html part, else the first other text; a multipart whose boundary
/// is nowhere gives its preamble; a message of an unreadable or unknown type counts as text/plain.
/// Looks into no enclosed message but one: where a delivery report without status part encloses a
/// delivery report, that one's text and status parts are taken.
/// `message` has gone through guard_for_parser(). Its bytes are only read.
MimeParts read_mime_parts(QByteArrayView message);
