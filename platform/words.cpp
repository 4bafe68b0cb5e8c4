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
    QString result;
    result.reserve(text.size() + breaks);
    const auto *rest = text.begin();
    while (rest != text.end()) {
        const auto *line_end = std::find_if(rest, text.end(), is_break);
        result.append(QStringView(rest, line_end));
        if (line_end == text.end())
            break;
        result.append(QLatin1String("\r\n"));
        rest = line_end + 1;
        if (*line_end == QLatin1Char('\r') && rest != text.end() && *rest == QLatin1Char('\n'))
            ++rest;
    }
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
