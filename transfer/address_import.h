#pragma once

class DataConnection;
class ImportWindow;
class PleaseWait;
class ProgressReport;
class Prompts;

/// What an import works with. Everything in it outlives the import.
struct ImportDesk
{
    DataConnection &rows; // the addresses go to whatever table its record set shows
    Prompts &prompts;
    PleaseWait &please_wait;
    ImportWindow &window;
    ProgressReport &progress;
};

/// Asks for a text file and stores its items (import_items.h) one row and one re-read at a time,
/// the last item first; the item at the file's end itself is never stored.
///
/// Whatever fails before the first value has been set in its new row ends the import with one
/// message; its windows then stay open. From then on failures are passed over: a row that the
/// database refuses is not stored, and the next one follows.
void import_addresses(const ImportDesk &desk);
