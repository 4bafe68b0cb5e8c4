#include "transfer/transfer_commands.h"

#include "platform/prompts.h"
#include "transfer/address_export.h"
#include "transfer/address_import.h"
#include "transfer/address_print.h"
#include "transfer/grid_export.h"

TransferCommands::TransferCommands(const TransferDesk &desk)
    : desk_(desk),
      window_(desk.handlers, desk.prompts)
{
}

void TransferCommands::Import_Click()
{
    import_addresses({desk_.Data2, desk_.prompts, desk_.please_wait, window_, desk_.progress});
}

void TransferCommands::Export_Click() const
{
    desk_.prompts.notice(QStringLiteral(
        "If you want to export to a CSV file then give the file name a *.csv extension. "
        "Alternatively, if you want to export to a text file, give the file name a *.txt "
        "extension"));
    export_addresses({desk_.Data2, desk_.prompts, desk_.progress},
                     QStringLiteral("All Files (*.*)|*.*"), "select * from master");
}

void TransferCommands::SaveGrid_Click() const
{
    save_grid({desk_.Data2, desk_.prompts, desk_.progress});
}

void TransferCommands::PrintAddresses_Click() const
{
    print_addresses({desk_.Data2, desk_.prompts, desk_.progress}, desk_.printer);
}

void TransferCommands::ImportHelp_Click() const
{
    desk_.prompts.notice(QStringLiteral(
        "To Import from Outlook Express, use Outlook's export facility to export eMail addresses "
        "to a CSV file.\n"
        "Then use Lumiset's IMPORT function ( File > Import ) to add those addresses to the "
        "database"));
}
