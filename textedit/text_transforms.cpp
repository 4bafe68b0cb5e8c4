#include "textedit/text_transforms.h"

#include "platform/words.h"

#include <QStringView>

#include <algorithm>

namespace
{
const QLatin1String line_end("\r\n");
constexpr QLatin1Char comma(',');

bool is_break(QChar c)
{
    return c == QLatin1Char('\r') || c == QLatin1Char('\n');
}

/// From the first character on, without overlap.
qsizetype occurrences(QStringView text, QStringView wanted)
{
    if (wanted.size() == 1)
        return text.count(wanted.front());
    qsizetype count = 0;
    for (qsizetype found = text.indexOf(wanted); found >= 0;
         found = text.indexOf(wanted, found + wanted.size()))
        ++count;
    return count;
}

/// Takes the first line off `rest`, which is not empty.
QStringView take_line(QStringView &rest)
{
    const auto *end = std::find_if(rest.begin(), rest.end(), is_break);
    const QStringView line(rest.begin(), end);
    const bool two = end != rest.end() && *end == QLatin1Char('\r') && end + 1 != rest.end() &&
                     end[1] == QLatin1Char('\n');
    rest = rest.sliced(std::min(line.size() + (two ? 2 : 1), rest.size()));
    return line;
}
} // namespace

QString with_ended_lines(const QString &text)
{
    QString lines = with_cr_lf(text);
    if (!lines.isEmpty() && !lines.endsWith(line_end))
        lines += line_end;
    return lines;
}

// Not QString::replace(): where the text grows it moves the whole rest for every thousand
// occurrences.
QString with_replaced(const QString &text, const QString &wanted, const QString &replacement)
{
    const qsizetype count = wanted.isEmpty() ? 0 : occurrences(text, wanted);
    if (count == 0)
        return text;
    const QStringView all(text);
    QString result(text.size() + count * (replacement.size() - wanted.size()), Qt::Uninitialized);
    QChar *out = result.begin();
    const QChar *rest = all.begin();
    for (auto left = count; left > 0; --left) {
        const QChar *found = all.begin() + all.indexOf(wanted, rest - all.begin());
        out = std::copy(rest, found, out);
        out = std::copy(replacement.begin(), replacement.end(), out);
        rest = found + wanted.size();
    }
    std::copy(rest, all.end(), out);
    return result;
}

QString items_from_the_last(const QString &text)
{
    const auto commas = text.count(comma);
    if (commas == 0)
        return {};
    const QChar *begin = text.constData();
    const QChar *end = begin + text.lastIndexOf(comma); // of the item in hand
    QString lines(end + 1 - begin + commas, Qt::Uninitialized);
    QChar *out = lines.begin();
    while (true) {
        const QChar *start = end;
        while (start != begin && start[-1] != comma)
            --start;
        out = std::copy(start, end, out);
        *out++ = QLatin1Char('\r');
        *out++ = QLatin1Char('\n');
        if (start == begin)
            break;
        end = start - 1;
    }
    return lines;
}

KeptLines lines_that_contain(const QString &text, const QString &wanted)
{
    KeptLines kept;
    kept.text.reserve(text.size());
    QStringView rest(text);
    QStringView line;
    while (!rest.isEmpty()) {
        line = take_line(rest);
        if (line.contains(wanted)) {
            kept.text += line;
            kept.text += line_end;
        }
    }
    kept.last = line.toString();
    return kept;
}

QString with_commas_for_blanks(QString text)
{
    text.replace(QLatin1Char(' '), comma);
    return text;
}

QString with_commas_for_semicolons(QString text)
{
    text.replace(QLatin1Char(';'), comma);
    return text;
}
