#pragma once

#include <QString>

class LongText;

/// A stretch of a text: from `start` up to `end`, which is not part of it.
struct TextPage
{
    qsizetype start = 0;
    qsizetype end = 0;

    bool operator==(const TextPage &) const = default;
};

/// The stretch of a long text that a box shows around `position`: `reach` characters to either
/// side, at the text's ends as many more to the other. It begins behind a line break if there is
/// one in its first quarter, and parts no surrogate pair. A text of up to two reaches is one page.
TextPage page_around(const LongText &text, qsizetype position, qsizetype reach);

/// Whether a letter of the text has so many combining marks that laying it out takes long: time
/// goes by the square of them.
bool has_long_cluster(const QString &text);

/// The text as a text document keeps it, but for its name of a line break: CR LF, LF and CR are LF,
/// and the three characters that a document itself takes for line breaks (U+2029, U+FDD0, U+FDD1)
/// are blanks.
QString document_text(QString text);
