#include "platform/text_page.h"

#include <algorithm>

namespace
{
qsizetype beside_a_pair(QStringView text, qsizetype position)
{
    const bool inside = position > 0 && position < text.size() && text[position].isLowSurrogate() &&
                        text[position - 1].isHighSurrogate();
    return inside ? position - 1 : position;
}

// A break of its own line would be shown as an empty line that is not there.
qsizetype line_start(QStringView text, qsizetype from, qsizetype within)
{
    if (from == 0 || text[from - 1] == QLatin1Char('\n'))
        return from;
    const qsizetype line_break = text.sliced(from, within).indexOf(QLatin1Char('\n'));
    return line_break < 0 ? beside_a_pair(text, from) : from + line_break + 1;
}

bool is_hidden_break(QChar c)
{
    return c == QChar::ParagraphSeparator || c == QChar(0xFDD0) || c == QChar(0xFDD1);
}
} // namespace

TextPage page_around(QStringView text, qsizetype position, qsizetype reach)
{
    if (text.size() <= 2 * reach)
        return {0, text.size()};
    const qsizetype start = std::clamp<qsizetype>(position - reach, 0, text.size() - 2 * reach);
    return {line_start(text, start, reach / 2), beside_a_pair(text, start + 2 * reach)};
}

QString document_text(QString text)
{
    // In place: the text may be a large part of the memory that there is.
    QChar *kept = text.begin();
    const QChar *end = text.end();
    for (const QChar *c = kept; c != end; ++c) {
        if (*c == QLatin1Char('\r')) {
            if (c + 1 == end || c[1] != QLatin1Char('\n'))
                *kept++ = QLatin1Char('\n');
        } else {
            *kept++ = is_hidden_break(*c) ? QChar(QLatin1Char(' ')) : *c;
        }
    }
    text.truncate(kept - text.begin());
    return text;
}
