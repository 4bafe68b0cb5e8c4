#pragma once

#include <QByteArrayView>
#include <QDateTime>

/// Reads an unfolded Date value (RFC 5322 3.3, and its obsolete forms: zone names, two-digit years,
/// no seconds, comments). @return an invalid date-time when it cannot be read.
QDateTime read_message_date(QByteArrayView value);
