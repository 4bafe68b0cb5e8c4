#pragma once

#include "platform/line_printer.h"

class DataConnection;
class Prompts;

/// "Print eMail Addresses": shows the table `email` in the connection and prints the `email` of
/// every row, one a line; then says "Finished!". Without rows no printer is needed.
/// @throws RuntimeError 482 (the printer); what the database says.
void print_addresses(DataConnection &rows, Prompts &prompts, const PrinterMaker &printer);
