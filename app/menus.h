#pragma once

class QAction;
class QMenu;
class QMenuBar;

/// The main window's menu entries, each under its own name. The menu bar owns them.
struct Menus
{
    QAction *Export;
    QAction *Import;
    QAction *Backup;
    QAction *ManipulateText;

    QMenu *Tools;
    QAction *ReadTableName;
    QAction *ChangeTableName;
    QAction *WarningSwitch;
    QAction *SaveGrid;
    QAction *PrintAddresses;
    QAction *ImportHelp;
    QAction *ReviewFilter;
    QAction *MailProfiles;

    QAction *HelpFile;
};

/// Fills the menu bar: "File", "Tools", "Help".
Menus add_menus(QMenuBar &bar);
