#pragma once

#include <QString>

/// Makes a database file with the five tables system, master, email, email2 and import, all empty.
/// The file appears whole or not at all; it is readable by its owner alone. `path` may be in drive
/// notation; its folder must be there.
/// @throws RuntimeError 75 when there is a file of that name already, 76 when the folder is
/// missing, 70 or 61 when it cannot be written.
void create_database(const QString &path);
