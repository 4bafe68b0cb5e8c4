#pragma once

#include "platform/line_printer.h"
#include "transfer/import_window.h"

class DataConnection;
class EventHandlers;
class PleaseWait;
class ProgressReport;
class Prompts;

/// What the commands work with. Everything in it outlives them.
struct TransferDesk
{
    DataConnection &Data2; // the master list, unless another command has pointed it elsewhere
    Prompts &prompts;
    PleaseWait &please_wait;
    ProgressReport &progress;
    EventHandlers &handlers;
    PrinterMaker printer;
};

/// The commands of the menus that move addresses between the database and files.
class TransferCommands
{
public:
    explicit TransferCommands(const TransferDesk &desk);

    /// The import window opens over this one.
    void set_parent(QWidget *main_window) { window_.set_parent(main_window); }

    /// "Import email addresses from CSV file": see import_addresses().
    void Import_Click();
    /// "Export email addresses": see export_addresses().
    void Export_Click() const;
    /// "Save Grid As CSV": see save_grid().
    void SaveGrid_Click() const;
    /// "Print eMail Addresses": see print_addresses().
    void PrintAddresses_Click() const;
    /// "Import From Another Mail Program": says how.
    void ImportHelp_Click() const;

private:
    TransferDesk desk_;
    ImportWindow window_;
};
