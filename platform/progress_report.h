#pragma once

#include <QString>

/// Tells a person how far long work is ("Message 532 of 10,000"), painted at a rate an eye can
/// follow.
class ProgressReport
{
public:
    virtual ~ProgressReport() = default;

    /// `what` names the thing counted ("Message"); `done` of `total` are finished.
    virtual void tell(const QString &what, qint64 done, qint64 total) = 0;

    /// Nothing runs any more: what was told goes, a note stays.
    virtual void clear() = 0;

    /// What a person should know of the last run (messages that were skipped); empty for nothing.
    /// It stands until the next note, beneath whatever is told meanwhile.
    virtual void note(const QString &text) = 0;
};
