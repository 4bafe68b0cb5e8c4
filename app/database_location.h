#pragma once

class DataConnection;
class Prompts;
class QLineEdit;
class SettingsStore;

/// Where the database lies: its box and its two buttons.
class DatabaseLocation
{
public:
    DatabaseLocation(QLineEdit &Text25, SettingsStore &settings, DataConnection &Data1,
                     Prompts &prompts);

    void cmdGet2_Click() const;

    /// Lets a person choose the database file, stores its path and points the work table's
    /// connection at it. The master list keeps the old file until the next start.
    void Command35_Click();

private:
    bool is_agreed();
    void change_to_box();
    void store();

    QLineEdit &Text25;
    SettingsStore &settings_;
    DataConnection &Data1;
    Prompts &prompts_;
};
