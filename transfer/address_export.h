#pragma once

#include "db/statement.h"
#include "transfer/export_desk.h"

#include <QString>

/// Asks for a file by a dialog with this filter and writes the `email` of every row of `source` to
/// it, one a line, each ended by CR LF: whole or not at all. The connection is left on `source`.
/// Without a file the first row fails with the bad file number that it always had; without rows
/// there is nothing to fail.
/// @throws RuntimeError 52 (see above); as TextFileWriter; what the database says.
void export_addresses(const ExportDesk &desk, const QString &filter, const Statement &source);
