#pragma once

class DataConnection;
class ProgressReport;
class QListWidget;
class QProgressBar;
class QString;

/// Adds the `email` of every row of the connection's record set to the end of the list, from the
/// first row on. The event loop gets a turn, and the list its rows, at a rate that an eye can
/// follow; the bar shows the percent position. The time taken grows with the rows, not with their
/// square.
/// @return false when another command put other rows in place during a turn: the list is not whole.
/// @throws RuntimeError when the database fails.
bool fill_with_addresses(QListWidget &list, DataConnection &rows, QProgressBar &bar,
                         ProgressReport &progress);

/// The same at one go, without a turn of the event loop.
void append_addresses(QListWidget &list, DataConnection &rows, ProgressReport &progress);

/// All entries of the list, in its order, with a semicolon between two of them.
QString joined_entries(const QListWidget &list);
