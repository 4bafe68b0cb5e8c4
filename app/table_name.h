#pragma once

#include <QString>

class DataConnection;
class Prompts;
class QLineEdit;
class SettingsStore;

/// The name of the table that the work table's connection shows, as a setting.
class TableName
{
public:
    TableName(QLineEdit &Text2, SettingsStore &settings, DataConnection &Data1, Prompts &prompts);

    /// Puts the stored name into the box.
    void ReadTableName_Click() const;

    /// Stores the box's text, after asking, and sets it as the connection's record source, which is
    /// in force from the next refresh on.
    void ChangeTableName_Click();

private:
    void change_from(const QString &stored);
    void store();

    QLineEdit &Text2;
    SettingsStore &settings_;
    DataConnection &Data1;
    Prompts &prompts_;
};
