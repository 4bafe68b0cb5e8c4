#pragma once

#include "platform/line_printer.h"
#include "transfer/export_desk.h"

/// "Print eMail Addresses": shows the table `email` in the connection and prints the `email` of
/// every row, one a line; then says "Finished!". Without rows no printer is needed. Rows that
/// cannot be read end it before anything is printed.
/// @throws RuntimeError 482 (the printer); what the database says.
void print_addresses(const ExportDesk &desk, const PrinterMaker &printer);
