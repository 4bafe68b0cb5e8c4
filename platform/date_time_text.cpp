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
    // Local time may not exist (the hour that summer time skips); its parts are read all the same.
    const QDateTime parts = QDateTime::fromString(text, form);
    return {parts.date(), parts.time(), Qt::UTC};
}
