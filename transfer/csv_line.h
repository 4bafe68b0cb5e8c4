#pragma once

#include <QString>
#include <QStringList>

/// The fields as a record of comma-separated values (RFC 4180), without its line end: a field that
/// holds a comma, a quote or a line break stands in quotes. Nothing else is changed, also where a
/// spreadsheet would take a field for a formula: what is read back must be what was written.
QString csv_line(const QStringList &fields);
