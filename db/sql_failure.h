#pragma once

#include "platform/runtime_error.h"

#include <QString>

/// The failure 3075 of a statement; its description holds the statement's text, the middle left
/// out when it is very long, and the reason.
RuntimeError syntax_failure(const QString &statement, const QString &reason);

/// The failure 3061 of a statement that names a column which is not there.
RuntimeError unknown_column_failure(const QString &column);

/// The failure 3078 of a statement that names a table which is not there.
RuntimeError unknown_table_failure(const QString &table);
