#pragma once

#include "platform/runtime_error.h"

#include <QString>

/// What an action throws as RuntimeError: its number, a blank, its description; "no failure" when
/// it throws none.
template <typename Action>
QString failure_text(Action action)
{
    try {
        action();
    } catch (const RuntimeError &error) {
        return QString::number(error.number()) + ' ' + error.description();
    }
    return "no failure";
}
