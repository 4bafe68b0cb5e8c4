#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Decodes base64 (RFC 2045 6.8) from mail as it is: bytes outside the alphabet are skipped, and
/// padding ends a piece, not the text: what stands behind it is decoded anew.
QByteArray decode_base64(QByteArrayView encoded);

/// Decodes quoted-printable (RFC 2045 6.7): "=" and two hexadecimal digits are a byte, "=" at a
/// line's end joins the lines, blanks at a line's end go; any other "=" stays as it is.
QByteArray decode_quoted_printable(QByteArrayView encoded);

/// Decodes the "Q" encoding of header words (RFC 2047 4.2): as above, and "_" is a blank.
QByteArray decode_q(QByteArrayView encoded);

/// Decodes uuencoded lines, with or without their "begin" line; "end" ends them.
QByteArray decode_uuencode(QByteArrayView encoded);
