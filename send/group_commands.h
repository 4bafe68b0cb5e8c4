#pragma once

class BoundLine;
class DataConnection;
class ProgressReport;
class Prompts;
class QComboBox;
class QLineEdit;
class QProgressBar;
class QString;
class TextBox;

/// What the group commands read, fill and walk.
struct GroupDesk
{
    DataConnection &Data1; // the work table
    DataConnection &Data2; // the master list
    Prompts &prompts;
    ProgressReport &progress;
    const BoundLine &current_address; // what `Text30` shows
    QComboBox &Combo2;                // the column to search
    QLineEdit &Text4;                 // what to search for
    TextBox &Text12;                  // the address box
    QLineEdit &Text29;                // the group's name; the third returned-mail heading's box
    TextBox &RichTextBox1;            // the group list text
    QProgressBar &ProgressBar2;
};

/// Makes, stores and saves groups: named lists of addresses, joined by "; ".
class GroupCommands
{
public:
    explicit GroupCommands(const GroupDesk &desk) : desk_(desk) {}

    /// "Make Group": a group file from a search over the table `email`.
    /// @throws RuntimeError of the database (3265 when the work table's view has no column for the
    /// marker record) or of the file.
    void cmdMkGroups_Click() const;

    /// "Add ALL eMail Addresses From Database To A Group": of every address in `email2`.
    /// @throws RuntimeError of the database or of the file.
    void Command69_Click() const;

    /// "Update": writes the group list text into `groups2` of a group's rows.
    /// @throws RuntimeError of the database, 3075 for a single quote in the list or the name.
    void cmdUpdateToDB_Click() const;

    /// "Create Group": saves the address box as a group file. @throws RuntimeError of the file.
    void Command29_Click() const;

    /// "Make a text file of all addresses". Any failure is told in one fixed message.
    void Command30_Click() const;

    /// "Make smaller groups": tells how.
    void Command41_Click() const;

private:
    void choose_search() const;
    void ask_for_name() const;
    void add_marker_record(DataConnection &connection) const;
    QString walk(DataConnection &walked) const;
    void clear_list() const;
    QString show_addresses_of(const QString &list) const;
    void save_under_group_name(const QString &list) const;
    void store_in_database(const QString &list) const;
    void save_all_addresses() const;

    GroupDesk desk_;
};
