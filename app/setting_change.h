#pragma once

#include <QString>

/// What a typed value does to a stored one.
enum class SettingChange { First, Different, None };

inline SettingChange setting_change(const QString &stored, const QString &typed)
{
    if (stored.isEmpty())
        return SettingChange::First;
    return typed == stored ? SettingChange::None : SettingChange::Different;
}
