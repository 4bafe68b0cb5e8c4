#include "mail/failed_addresses.h"

#include "platform/words.h"

namespace
{
const QString blank = QStringLiteral(" ");
const QString comma = QStringLiteral(",");
const QString line_break = QStringLiteral("\r\n");

QString with_blanks_for_marks(QString text)
{
    for (const char mark : {'[', ']', '<', '>', '{', '}', ';', ':', '/', '\\'})
        text.replace(QLatin1Char(mark), QLatin1Char(' '));
    return text.replace(line_break, blank);
}

QStringList elements_of(const QString &comma_list)
{
    QStringList elements = split_text(comma_list, comma);
    elements.removeAll(QString());
    return elements;
}
} // namespace

FailedAddresses failed_addresses(const QString &notice)
{
    FailedAddresses found;
    found.words =
        keep_addresses(with_blanks_for_marks(with_cr_lf(trim_blanks(notice))), blank, blank);
    if (found.words.isEmpty())
        return found;
    found.lines = QString(found.words).replace(blank, line_break);
    if (found.lines.count(QLatin1Char('@')) != 1) {
        found.comma_list = comma + QString(found.words).replace(blank, comma);
        found.entries = elements_of(found.comma_list);
        found.last_element = found.entries.constLast();
    }
    found.entries += found.lines.split(line_break);
    return found;
}
