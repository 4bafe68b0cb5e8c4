#pragma once

#include "mail/log_replay.h"
#include "mail/purge_desk.h"
#include "mail/returned_mail_purge.h"
#include "mail/subject_purge.h"

#include <QString>

#include <functional>

/// The buttons that run one complete purge by hand: collect, write the log, replay it, show both
/// lists.
class PurgeCycles
{
public:
    explicit PurgeCycles(const PurgeDesk &desk);

    /// "Filter", "Filter1", "Filter2": the returned-mail purge with the heading of the setting of
    /// that name.
    void cmdFilterit_Click() const;
    void Command58_Click() const;
    void Command59_Click() const;

    /// "Delete": the subject-heading purge.
    void cmdDel_Click() const;

private:
    void collect_log_and_replay(const std::function<void()> &collect) const;
    void run_returned_mail_cycle(const QString &key) const;
    void tell_no_heading() const;

    PurgeDesk desk_;
    ReturnedMailPurge returned_mail_;
    SubjectPurge subject_heading_;
    LogReplay replay_;
};
