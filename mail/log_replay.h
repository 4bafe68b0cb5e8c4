#pragma once

#include "mail/purge_desk.h"

#include <QStringList>

class SkippedSteps;

/// Reads the last-batch log and deletes what it lists: for each line, in order, the work-table rows
/// whose address contains it, the master-list rows whose address contains it, and the work-table
/// rows whose subject contains it. Empty lines are passed over.
class LogReplay
{
public:
    explicit LogReplay(const PurgeDesk &desk) : desk_(desk) {}

    /// "Read log and delete from database".
    /// @param skipped  takes the statements that fail, and only those are missing then; null: the
    /// first one ends the replay.
    /// @throws RuntimeError 53 without a log. Without `skipped` also 3075 at a line with a single
    /// quote, 93 at one with a broken wildcard, or what the database says; the lines before it have
    /// had their effect then.
    void Command10_Click(SkippedSteps *skipped = nullptr) const;

private:
    void replay(const QStringList &lines, SkippedSteps *skipped) const;
    void delete_plain(const QStringList &lines, SkippedSteps *skipped) const;
    void delete_one_by_one(const QString &line, SkippedSteps *skipped) const;
    void clear_fields() const;

    PurgeDesk desk_;
};
