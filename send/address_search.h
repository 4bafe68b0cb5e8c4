#pragma once

class DataConnection;
class ProgressReport;
class Prompts;
class QLineEdit;
class QListWidget;
class QString;
class Statement;

/// What a search of the master list reads and fills.
struct SearchDesk
{
    DataConnection &Data2;
    Prompts &prompts;
    ProgressReport &progress;
    QLineEdit &Text16; // part of a name
    QLineEdit &Text23; // part of an address
    QListWidget &List1;
};

/// Searches the master list and, if a person wants it, puts what was found into the address list.
class AddressSearch
{
public:
    explicit AddressSearch(const SearchDesk &desk) : desk_(desk) {}

    /// "Search Email". @throws RuntimeError 3075 for a quote in the text, or what the database
    /// says.
    void Command19_Click() const;

    /// "Search Name". @throws RuntimeError as Command19_Click().
    void Command37_Click() const;

private:
    void search(const Statement &source) const;
    void show(const Statement &source) const;
    bool is_agreed(const QString &question, const Statement &source) const;

    SearchDesk desk_;
};
