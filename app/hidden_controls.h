#pragma once

class QLineEdit;
class QPushButton;
class QWidget;

/// Controls that no tab shows. The window owns them.
struct HiddenControls
{
    QPushButton *Command11; // copies the work table's addresses into the master list
    QPushButton *Command22; // returned-mail purge with the first heading
    QPushButton *Command23; // subject-heading purge
    QPushButton *Command27; // purge of the table "email" by a typed heading
    QLineEdit *Text8;       // the work table's current address
};

HiddenControls add_hidden_controls(QWidget &window);
