#pragma once

#include "mail/purge_desk.h"
#include "platform/runtime_error.h"

#include <functional>

class MailStore;

/// What a retrieval run works on beside the purges.
struct RetrievalDesk
{
    PurgeDesk purges;
    MailStore &store;
    /// Switches the main window's tab strip: 0 is the first tab, 11 the work table's.
    std::function<void(int)> show_tab;
    /// Disables the schedule's timer.
    std::function<void()> stop_timer;
};

/// Copies every message of the inbox into the work table, the senders into the master list, and
/// purges. Nothing in the inbox is changed, so every run copies the whole inbox again.
class RetrievalRun
{
public:
    explicit RetrievalRun(const RetrievalDesk &desk) : desk_(desk) {}

    /// "Get Emails": asks its questions, then runs. Any failure goes to the caller.
    /// @throws RuntimeError of the store, the database or the log files.
    void Command2_Click() const;

    /// The scheduled run: asks nothing, always purges, and skips what fails from the fetch on.
    /// @throws RuntimeError of the sign-on alone.
    void runSchedule_Click() const;

private:
    enum class Errors { Thrown, Ignored };

    template <typename Step>
    static void step(Errors errors, Step &&step)
    {
        if (errors == Errors::Thrown)
            step();
        else
            attempt(step);
    }

    void ask_for_purges() const;
    bool database_is_agreed() const;
    bool profile_is_agreed() const;
    void sign_on() const;
    void copy_messages(Errors errors) const;
    bool copy_message(int index, Errors errors) const;
    void copy_fields(Errors errors) const;
    void purge_as_agreed() const;
    void purge_ignoring_errors() const;
    void show_work_view_on_master() const;
    void show_whole_tables(Errors errors) const;

    RetrievalDesk desk_;
};
