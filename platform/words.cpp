#include "platform/words.h"

#include <algorithm>

QString trim_blanks(const QString &text)
{
    qsizetype first = 0;
    qsizetype end = text.size();
    while (first < end && text[first] == QLatin1Char(' '))
        ++first;
    while (end > first && text[end - 1] == QLatin1Char(' '))
        --end;
    return text.mid(first, end - first);
}

QString with_cr_lf(const QString &text)
{
    const auto is_break = [](QChar c) { return c == QLatin1Char('\r') || c == QLatin1Char('\n'); };
    const auto breaks = std::count_if(text.begin(), text.end(), is_break);
    QString result(text.size() + breaks,
                   Qt::Uninitialized); // more than it takes where CR LF stands
    QChar *end = result.begin();
    QChar before;
    for (const QChar c : text) {
        const bool second_half = c == QLatin1Char('\n') && before == QLatin1Char('\r');
        before = c;
        if (second_half)
            continue;
        *end++ = is_break(c) ? QChar(QLatin1Char('\r')) : c;
        if (is_break(c))
            *end++ = QLatin1Char('\n');
    }
    result.truncate(end - result.constData());
    return result;
}

QStringList split_text(const QString &text, const QString &delimiter)
{
    if (delimiter.isEmpty())
        return {text};
    const QStringList pieces = text.split(delimiter);
    if (pieces.size() == 1)
        return pieces;
    QStringList elements;
    for (const QString &piece : pieces) {
        if (!piece.isEmpty())
            elements.append(piece);
    }
    elements.resize(pieces.size());
    return elements;
}

QString keep_addresses(const QString &text, const QString &delimiter, const QString &joiner)
{
    QStringList kept;
    const QStringList pieces = text.split(delimiter);
    for (const QString &piece : pieces) {
        if (piece.contains(QLatin1Char('@')))
            kept.append(piece);
    }
    return kept.join(joiner);
}
