#pragma once

class SettingsStore;

/// On the first start (no database location is stored yet) prepares what an installer would have
/// left: the folder, the two databases with their tables, the help text and its launcher; each only
/// if it is missing. Later starts create nothing, so that a database that has gone missing is seen.
/// @throws RuntimeError when something cannot be written.
void prepare_first_start(const SettingsStore &settings);
