#pragma once

class DataConnection;
class QListWidget;
class QProgressBar;

/// Adds the `email` of every row of the connection's record set to the list, from the first row on.
/// The event loop gets a turn, and the list its rows, at a rate that an eye can follow; the bar
/// shows the percent position. The time taken grows with the rows, not with their square.
/// @throws RuntimeError when the database fails.
void fill_with_addresses(QListWidget &list, DataConnection &rows, QProgressBar &bar);
