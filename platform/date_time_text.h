#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

/// Where the program's "now" comes from; tests set it.
using Clock = std::function<QDateTime()>;

/// Local date-time text as every table, log and list shows it: "yyyy-MM-dd HH:mm:ss".
QString date_time_text(const QDateTime &moment);

/// Reads date_time_text() back: what clock and calendar showed, in UTC, where every such moment
/// exists. An invalid date-time for any other text.
QDateTime parse_date_time_text(const QString &text);
