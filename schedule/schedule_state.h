#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

class SkippedSteps;

/// What a person reads about a schedule that waits for its next run; `last_run` is empty before the
/// first one.
QString state_until(const std::optional<QDateTime> &next_run, const QString &last_run);

/// What a person reads while a run goes on.
QString state_while_running(const QString &begun);

/// What a run that began then has passed over: the count, and a reason a line.
QString skipped_note(const QString &begun, const SkippedSteps &skipped);
