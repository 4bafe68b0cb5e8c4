#pragma once

#include <QString>

class ActivityLog;
class DataConnection;
class QDateTime;

/// Empties the work table when exactly `period` hour boundaries lie between `reference` and `now`,
/// reads the work table's view anew, and says so in the deletion log. Tells nobody.
/// @param period  hours as a number's text; empty: nothing is done.
/// @throws RuntimeError 13 for a period that is no number, or what the database or the log file
/// say.
void purge_system_log(const QString &period, const QDateTime &reference, const QDateTime &now,
                      DataConnection &work_table, const ActivityLog &log);
