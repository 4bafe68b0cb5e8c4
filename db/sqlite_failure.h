#pragma once

#include "platform/runtime_error.h"

#include <QString>

struct sqlite3;

/// The last failure of a database connection under its customary number: 3061 and 3078 for names
/// that are not there, 93 for a bad pattern, 3027 for a file that cannot be written, 61 for a full
/// disk, 57 for a failing one, 70 for a locked file, 3343 for a damaged one, and 3075 for
/// everything else. `subject` is the statement or the file that it concerns.
RuntimeError sqlite_failure(sqlite3 *database, const QString &subject);
