#include "platform/words.h"

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
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool cr = text[i] == QLatin1Char('\r');
        if (!cr && text[i] != QLatin1Char('\n')) {
            result += text[i];
            continue;
        }
        result += QLatin1String("\r\n");
        if (cr && i + 1 < text.size() && text[i + 1] == QLatin1Char('\n'))
            ++i;
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
