#pragma once

class ActivityLog;
class PleaseWait;
class TextBox;

/// Writes the log box's entries to the activity logs: what the button "Log" does, for the user and
/// for the purges, which press it.
class LogWriter
{
public:
    LogWriter(TextBox &Text27, PleaseWait &please_wait, const ActivityLog &log);

    /// Shows "Please Wait!", writes the box's text as one batch and unloads the window. The box
    /// keeps its text.
    /// @throws RuntimeError when a log file cannot be written.
    void Command1_Click();

private:
    TextBox &Text27;
    PleaseWait &please_wait_;
    const ActivityLog &log_;
};
