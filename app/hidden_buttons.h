#pragma once

class QPushButton;
class QWidget;

/// Buttons that no tab shows: commands press them. The window owns them.
struct HiddenButtons
{
    QPushButton *Command11; // copies the work table's addresses into the master list
    QPushButton *Command22; // returned-mail purge with the first heading
    QPushButton *Command23; // subject-heading purge
    QPushButton *Command27; // purge of the table "email" by a typed heading
};

HiddenButtons add_hidden_buttons(QWidget &window);
