#include "transfer/csv_line.h"

#include <algorithm>

namespace
{
bool needs_quotes(const QString &field)
{
    return std::any_of(field.begin(), field.end(),
                       [](QChar c) { return QStringLiteral(",\"\r\n").contains(c); });
}

QString quoted(QString field)
{
    return QLatin1Char('"') + field.replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
           QLatin1Char('"');
}
} // namespace

QString csv_line(const QStringList &fields)
{
    QStringList shown;
    for (const QString &field : fields)
        shown.append(needs_quotes(field) ? quoted(field) : field);
    return shown.join(QLatin1Char(','));
}
