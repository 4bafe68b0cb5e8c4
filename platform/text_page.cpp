#include "platform/text_page.h"

#include "platform/long_text.h"

#include <algorithm>

namespace
{
qsizetype beside_a_pair(const LongText &text, qsizetype position)
{
    if (position == 0 || position == text.size())
        return position;
    const QString around = text.stretch(position - 1, 2);
    const bool inside = around[0].isHighSurrogate() && around[1].isLowSurrogate();
    return inside ? position - 1 : position;
}

// A break of its own line would be shown as an empty line that is not there.
qsizetype line_start(const LongText &text, qsizetype from, qsizetype within)
{
    if (from == 0)
        return from;
    const qsizetype line_break = text.stretch(from - 1, within + 1).indexOf(QLatin1Char('\n'));
    return line_break < 0 ? beside_a_pair(text, from) : from + line_break;
}

bool is_hidden_break(QChar c)
{
    return c == QChar::ParagraphSeparator || c == QChar(0xFDD0) || c == QChar(0xFDD1);
}

bool is_no_document_character(QChar c)
{
    return c == QLatin1Char('\r') || is_hidden_break(c);
}
} // namespace

TextPage page_around(const LongText &text, qsizetype position, qsizetype reach)
{
    if (text.size() <= 2 * reach)
        return {0, text.size()};
    const qsizetype start = std::clamp<qsizetype>(position - reach, 0, text.size() - 2 * reach);
    return {line_start(text, start, reach / 2), beside_a_pair(text, start + 2 * reach)};
}

bool has_long_cluster(const QString &text)
{
    constexpr int most_marks = 512;
    int marks = 0;
    for (qsizetype i = 0; i < text.size() && marks <= most_marks; ++i) {
        const bool is_pair =
            i + 1 < text.size() && text[i].isHighSurrogate() && text[i + 1].isLowSurrogate();
        const char32_t code =
            is_pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        i += is_pair ? 1 : 0;
        marks = QChar::isMark(code) ? marks + 1 : 0;
    }
    return marks > most_marks;
}

QString document_text(QString text)
{
    if (std::none_of(text.cbegin(), text.cend(), is_no_document_character))
        return text; // shared, not copied
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
