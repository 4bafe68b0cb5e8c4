#pragma once

#include <QString>

/// The text with every line break (CR LF, LF, CR, U+2028, U+2029) as CR LF; everything else, NUL
/// included, stays.
QString with_crlf(const QString &text);

/// The text as one line: control characters and line breaks are blanks, none at either end.
QString as_one_line(QString text);

/// Shortens the text to `limit` UTF-16 units, never between the halves of one character.
/// @return how many units went.
qsizetype shorten(QString &text, qsizetype limit);
