#pragma once

#include "mail/purge_desk.h"

#include <QStringList>

/// What a replay does about a line whose statement fails.
enum class OnError { Stop, Skip };

/// Reads the last-batch log and deletes what it lists: for each line, in order, the work-table rows
/// whose address contains it, the master-list rows whose address contains it, and the work-table
/// rows whose subject contains it. Empty lines are passed over.
class LogReplay
{
public:
    explicit LogReplay(const PurgeDesk &desk) : desk_(desk) {}

    /// "Read log and delete from database".
    /// @throws RuntimeError 53 without a log. With OnError::Stop also 3075 at a line with a single
    /// quote, 93 at one with a broken wildcard, or what the database says; the lines before it have
    /// had their effect then. With OnError::Skip only the failing statements are missing.
    void Command10_Click(OnError on_error = OnError::Stop) const;

private:
    void replay(const QStringList &lines, OnError on_error) const;
    void delete_plain(const QStringList &lines, OnError on_error) const;
    void delete_one_by_one(const QString &line, OnError on_error) const;
    void clear_fields() const;

    PurgeDesk desk_;
};
