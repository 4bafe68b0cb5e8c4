#pragma once

#include "mail/purge_desk.h"

#include <QString>

/// The purge of the table `email` by a heading typed into the field Text2.
class TypedHeadingPurge
{
public:
    explicit TypedHeadingPurge(const PurgeDesk &desk) : desk_(desk) {}

    /// As long as a message's subject contains the heading, deletes the rows whose address contains
    /// the "@" words of the first such message's text, joined by blanks; ends when a pass deletes
    /// nothing. Leaves the work-table view on the table `email`.
    /// @throws RuntimeError 3075 for a quote in the heading or the words, or what the database
    /// says.
    void Command27_Click() const;

private:
    bool delete_by_first_match(const QString &heading) const;

    PurgeDesk desk_;
};
