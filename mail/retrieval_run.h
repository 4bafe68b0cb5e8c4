#pragma once

#include "mail/purge_desk.h"

#include <functional>
#include <utility>

class MailStore;
class SkippedSteps;

/// What a retrieval run works on beside the purges.
struct RetrievalDesk
{
    PurgeDesk purges;
    MailStore &store;
    /// Switches the main window's tab strip: 0 is the first tab, 11 the work table's.
    std::function<void(int)> show_tab;
    /// Disables the schedule's timer.
    std::function<void()> stop_timer;
    /// Told when a run has come to its end.
    std::function<void()> finished;
};

/// Copies every message of the inbox into the work table, the senders into the master list, and
/// purges. Nothing in the inbox is changed, so every run copies the whole inbox again.
class RetrievalRun
{
public:
    explicit RetrievalRun(RetrievalDesk desk) : desk_(std::move(desk)) {}

    /// "Get Emails": asks its questions, then runs. Any failure goes to the caller.
    /// @throws RuntimeError of the store, the database or the log files.
    void Command2_Click() const;

    /// The scheduled run: asks nothing, always purges, and passes over what fails from the fetch
    /// on, which `skipped` takes.
    /// @throws RuntimeError of what comes before the fetch: the settings, the sign-on.
    void runSchedule_Click(SkippedSteps &skipped) const;

private:
    void ask_for_purges() const;
    bool database_is_agreed() const;
    bool profile_is_agreed() const;
    void sign_on() const;
    // Without `skipped` a failure ends the run.
    void copy_messages(SkippedSteps *skipped) const;
    bool copy_message(int index, SkippedSteps *skipped) const;
    void copy_fields(SkippedSteps *skipped) const;
    void purge_as_agreed() const;
    void purge_ignoring_errors(SkippedSteps &skipped) const;
    void show_work_view_on_master() const;
    void show_whole_tables(SkippedSteps *skipped) const;

    RetrievalDesk desk_;
};
