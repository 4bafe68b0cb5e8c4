#include <gmime/gmime.h>

#include "mail/message_date.h"

#include <QByteArray>

#include <memory>

QDateTime read_message_date(QByteArrayView value)
{
    constexpr qsizetype longest = 200; // a date needs 40; what is longer is none
    if (value.isEmpty() || value.size() > longest)
        return {};
    const QByteArray text = value.toByteArray();
    const std::unique_ptr<GDateTime, decltype(&g_date_time_unref)> date(
        g_mime_utils_header_decode_date(text.constData()), g_date_time_unref);
    return date ? QDateTime::fromSecsSinceEpoch(g_date_time_to_unix(date.get())) : QDateTime();
}
