#pragma once

#include <QByteArrayView>
#include <QString>

/// Decodes an unfolded header value (RFC 2047) as tolerantly as mail needs: encoded words anywhere,
/// also inside quotes or glued to other text; adjacent words joined before their bytes are decoded,
/// so that a character split between them survives; a word without its end reaches to the next
/// blank. Bytes outside words are UTF-8 if valid, else Windows-1252.
QString decode_header_text(QByteArrayView value);

/// The length of the encoded word that begins at the value's first byte, its "?=" included; 0 when
/// none begins there or it has no end.
qsizetype encoded_word_length(QByteArrayView value);
