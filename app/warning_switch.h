#pragma once

#include <QString>

class Prompts;
class SettingsStore;

/// What is asked when the switch is set to `checked` over the `stored` text; empty when nothing is
/// asked, because the setting says so already.
QString warning_question(bool checked, const QString &stored);

/// Whether a retrieval run shows its warnings before it starts: "1" turns them off.
class WarningSwitch
{
public:
    WarningSwitch(SettingsStore &settings, Prompts &prompts);

    /// Whether the warnings are turned off.
    bool is_stored() const;

    /// The switch was set or cleared: stores it, after asking.
    void WarningSwitch_Click(bool checked);

private:
    SettingsStore &settings_;
    Prompts &prompts_;
};
