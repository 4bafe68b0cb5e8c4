#include "app/warning_switch.h"

#include "app/settings_store.h"
#include "platform/prompts.h"

namespace
{
const QString key = QStringLiteral("WarningMessages");

QString value_of(bool checked)
{
    return checked ? QStringLiteral("1") : QStringLiteral("0");
}
} // namespace

QString warning_question(bool checked, const QString &stored)
{
    if (stored == value_of(checked))
        return {};
    return checked && stored.isEmpty()
               ? QStringLiteral("Do you want to store this configuration?")
               : QStringLiteral("Do you want to change this configuration?");
}

WarningSwitch::WarningSwitch(SettingsStore &settings, Prompts &prompts)
    : settings_(settings),
      prompts_(prompts)
{
}

bool WarningSwitch::is_stored() const
{
    return settings_.read(key) == value_of(true);
}

void WarningSwitch::WarningSwitch_Click(bool checked)
{
    const QString question = warning_question(checked, settings_.read(key));
    if (!question.isEmpty() && prompts_.ok_cancel(question))
        settings_.write(key, value_of(checked));
}
