#pragma once

#include "transfer/export_desk.h"

/// "Save Grid As CSV": asks for a file and writes what the connection's grid shows to it, as
/// comma-separated values: the line of headings, then the rows in the grid's order. Fields are
/// written whole, also where the grid cuts them. Does nothing when no file is chosen.
/// @throws RuntimeError as TextFileWriter; what the database says; 70 for the database's own file.
void save_grid(const ExportDesk &desk);
