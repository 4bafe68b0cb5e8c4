#pragma once

#include <QString>
#include <QStringList>

/// The text without blanks (U+0020, nothing else) at either end.
QString trim_blanks(const QString &text);

/// The text with CR LF, LF and CR all as CR LF, as every text box hands it over.
QString with_cr_lf(const QString &text);

/// Splits `text` at `delimiter`. Without the delimiter the whole text is the one element. Empty
/// pieces are no elements, but the list has one slot more than there are delimiters: it ends in an
/// empty slot for every empty piece passed over.
/// @return  the elements in order, then the empty slots; never empty.
QStringList split_text(const QString &text, const QString &delimiter);

/// Splits `text` at `delimiter`, keeps the pieces that hold "@", each whole, and joins them with
/// `joiner`.
QString keep_addresses(const QString &text, const QString &delimiter, const QString &joiner);
