#include "platform/date_time_text.h"

namespace
{
const QString form = QStringLiteral("yyyy-MM-dd HH:mm:ss");
}

QString date_time_text(const QDateTime &moment)
{
    return moment.toLocalTime().toString(form);
}

QDateTime parse_date_time_text(const QString &text)
{
    return QDateTime::fromString(text, form);
}
