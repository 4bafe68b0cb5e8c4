#pragma once

#include <QString>

/// The text with every line break (CR LF, LF, CR, U+2028, U+2029) as CR LF; tabs, no-break spaces
/// and noncharacters (U+FDD0 … U+FDEF, U+FFFE, U+FFFF: a text document would make line breaks of
/// some) as blanks; everything else, NUL included, stays.
QString with_crlf(const QString &text);

/// The text as one line: control characters, noncharacters and line breaks are blanks, none
/// at either end.
QString as_one_line(QString text);

/// Shortens the text to the whole words within its first `limit` UTF-16 units; to nothing when the
/// first word is longer. Half an address would be part of other people's addresses.
/// @return how many units went.
qsizetype shorten(QString &text, qsizetype limit);

/// Drops the last word, of which only the beginning may be there, and the blanks before it.
/// @return how many units went.
qsizetype drop_last_word(QString &text);
