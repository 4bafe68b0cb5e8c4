#pragma once

#include "mail/purge_desk.h"

/// Collects the senders of messages with the unwanted subject heading in the log box. It deletes
/// nothing.
class SubjectPurge
{
public:
    explicit SubjectPurge(const PurgeDesk &desk) : desk_(desk) {}

    /// "delete incorrect subject headings from both tables": empties the log box and fills it with
    /// each sender once. With senders found the two lists are left crossed (work-table view on the
    /// master list and the other way round): whoever calls it presses both "Refresh" buttons
    /// afterwards. Without a heading, or without a match, the lists stay as they are.
    /// @throws RuntimeError 3075 for a heading with a quote, or what the database says.
    void Command23_Click() const;

private:
    void collect_senders() const;
    void show_tables_crossed() const;

    PurgeDesk desk_;
};
