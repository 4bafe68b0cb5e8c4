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
    if (wanted.isEmpty())
        return text;
    qsizetype found = text.indexOf(wanted);
    if (found < 0)
        return text;
    const QStringView all(text);
    QString result;
    result.reserve(text.size());
    qsizetype rest = 0;
    for (; found >= 0; found = all.indexOf(wanted, rest)) {
        result += all.sliced(rest, found - rest);
        result += replacement;
        rest = found + wanted.size();
    }
    result += all.sliced(rest);
    return result;
}

QString items_from_the_last(const QString &text)
{
    const QStringView all(text);
    QString lines;
    lines.reserve(text.size() + text.count(comma));
    qsizetype end = all.lastIndexOf(comma);
    while (end >= 0) {
        const qsizetype before = end == 0 ? -1 : all.lastIndexOf(comma, end - 1);
        lines += all.sliced(before + 1, end - before - 1);
        lines += line_end;
        end = before;
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
