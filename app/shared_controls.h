#pragma once

class QLineEdit;
class QProgressBar;
class QTableView;
class TextBox;

/// The controls that several subsystems read and write, each under its own name. They lie on the
/// tabs that their comments name; nobody searches for a widget by its name.
struct SharedControls
{
    QLineEdit &Text1;  // "View Master Table": address to add; heading field of the purges
    QLineEdit &Text2;  // "View Master Table": part of the old address; table name; typed heading
    QLineEdit &Text7;  // "View Master Table": new address
    QLineEdit &Text16; // "View Master Table": name to search for
    QLineEdit &Text23; // "View Master Table": address to search for

    TextBox &Text12; // "Send Mail": the address box

    QLineEdit &Text17; // "Set Properties /  Log": path of the log file
    QLineEdit &Text25; // "Set Properties /  Log": database location
    TextBox &Text27;   // "Set Properties /  Log": the log box
    QLineEdit &Text29; // "Set Properties /  Log": third returned-mail heading; group name

    TextBox &RichTextBox1; // "Create Group": list text; scratch of the extraction

    QLineEdit &Text31; // "About Ostrix": scratch fields of the address parser
    QLineEdit &Text32;
    QLineEdit &Text33;
    QLineEdit &Text34;
    TextBox &Text35;
    TextBox &RichTextBox2;

    QProgressBar &ProgressBar1; // "New Email (System Table)"
    QProgressBar &ProgressBar2; // "Create Group"
    QProgressBar &ProgressBar3; // "Send Mail"

    QTableView &MSFlexGrid1; // "New Email (System Table)": the work table
    QTableView &MSFlexGrid5; // "View Master Table": the master list
};
