#pragma once

#include "mail/purge_desk.h"

#include <QString>

/// Collects the failed addresses of returned-mail notices in the log box. It deletes nothing: the
/// log is the only way from collection to deletion, so that every deletion is recorded before it is
/// made.
class ReturnedMailPurge
{
public:
    explicit ReturnedMailPurge(const PurgeDesk &desk) : desk_(desk) {}

    /// Empties the log box and fills it with the entries of every work-table message whose subject
    /// contains the heading (blanks at its ends removed), then the heading; binds both lists to
    /// their whole tables. An empty heading only empties the box.
    /// @throws RuntimeError 6 above 32,767 notices, 3075 for a heading with a quote, or what the
    /// database says.
    void collect(const QString &heading) const;

    /// "delete all incorrect addresses(filter)": collects with the heading of the setting "Filter".
    void Command22_Click() const;

private:
    void collect_from_notices() const;
    void collect_from_current_notice() const;
    void show_whole_tables() const;

    PurgeDesk desk_;
};
