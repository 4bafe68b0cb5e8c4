#include "app/menus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace
{
QAction *add_entry(QMenu &menu, const char *name, const char *caption)
{
    QAction *entry = menu.addAction(QString::fromLatin1(caption));
    entry->setObjectName(QString::fromLatin1(name));
    return entry;
}

void add_file_menu(QMenuBar &bar, Menus &menus)
{
    QMenu &menu = *bar.addMenu(QStringLiteral("File"));
    menus.Export = add_entry(menu, "Export", "Export email addresses (See Help File: Section 3)");
    menus.Import = add_entry(menu, "Import",
                             "Import email addresses from CSV file (See Help File: Section 3)");
    menus.Backup = add_entry(menu, "Backup", "Backup database");
    menus.ManipulateText = add_entry(
        menu, "ManipulateText", "Manipulate a text file for import (See Help File: Section 3.1)");
}

void add_tools_menu(QMenuBar &bar, Menus &menus)
{
    QMenu &menu = *bar.addMenu(QStringLiteral("Tools"));
    menus.Tools = &menu;
    menus.ReadTableName = add_entry(menu, "ReadTableName", "Get Table Name");
    menus.ChangeTableName = add_entry(menu, "ChangeTableName", "Change Table Name");
    menus.WarningSwitch = add_entry(menu, "WarningSwitch", "Do Not Show Retrieval Warnings");
    menus.WarningSwitch->setCheckable(true);
    menus.SaveGrid = add_entry(menu, "SaveGrid", "Save Grid As CSV");
    menus.PrintAddresses = add_entry(menu, "PrintAddresses", "Print eMail Addresses");
    menus.ImportHelp = add_entry(menu, "ImportHelp", "Import From Another Mail Program");
    menus.ReviewFilter = add_entry(menu, "ReviewFilter", "Filter Window");
    menus.MailProfiles = add_entry(menu, "MailProfiles", "Mail Profiles");
}

void add_help_menu(QMenuBar &bar, Menus &menus)
{
    menus.HelpFile = add_entry(*bar.addMenu(QStringLiteral("Help")), "HelpFile", "HelpFile");
}

} // namespace

Menus add_menus(QMenuBar &bar)
{
    Menus menus{};
    add_file_menu(bar, menus);
    add_tools_menu(bar, menus);
    add_help_menu(bar, menus);
    return menus;
}
