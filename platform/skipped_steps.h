#pragma once

#include "platform/runtime_error.h"

#include <QHash>
#include <QStringList>

/// What a run that ignores errors has passed over, each reason once and in the order of first
/// sight.
class SkippedSteps
{
public:
    /// Runs `step`; what it throws as RuntimeError is written down. @return whether it ran to its
    /// end.
    template <typename Step>
    bool attempt(Step &&step)
    {
        try {
            step();
            return true;
        } catch (const RuntimeError &error) {
            add(error.description());
            return false;
        }
    }

    void add(const QString &reason);

    bool is_empty() const { return count_ == 0; }
    qint64 count() const { return count_; }

    /// One reason a line, with how often it came; after the 20th different one only how many
    /// follow.
    QString list() const;

private:
    QStringList reasons_;
    QHash<QString, qint64> times_;
    qint64 count_ = 0;
};

/// Runs one step of a command that ignores errors when `skipped` is there and is ended by them when
/// it is null.
/// @return whether the step ran to its end.
template <typename Step>
bool run_step(SkippedSteps *skipped, Step &&step)
{
    if (skipped != nullptr)
        return skipped->attempt(step);
    step();
    return true;
}
