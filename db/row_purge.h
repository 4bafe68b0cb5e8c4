#pragma once

#include "db/data_connection.h"

/// DataConnection::delete_containing() on an open file.
void purge_rows(DatabaseFile &file, std::span<const TableColumn> targets,
                const QStringList &values);
