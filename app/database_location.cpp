#include "app/database_location.h"

#include "app/setting_change.h"
#include "app/settings_store.h"
#include "db/data_connection.h"
#include "platform/prompts.h"

#include <QLineEdit>

namespace
{
const QString key = QStringLiteral("Database");
// What an absent path reads as, so that only a stored empty text counts as a first time.
const QString absent = QStringLiteral("0");
} // namespace

DatabaseLocation::DatabaseLocation(QLineEdit &box, SettingsStore &settings,
                                   DataConnection &work_table, Prompts &prompts)
    : Text25(box),
      settings_(settings),
      Data1(work_table),
      prompts_(prompts)
{
}

void DatabaseLocation::cmdGet2_Click() const
{
    Text25.setText(settings_.read(key));
}

void DatabaseLocation::Command35_Click()
{
    if (!is_agreed())
        return;
    const QString chosen = prompts_.open_file({});
    if (chosen.isEmpty()) {
        prompts_.notice(QStringLiteral("You must give the path to the database"));
        return;
    }
    Text25.setText(chosen);
    change_to_box();
}

bool DatabaseLocation::is_agreed()
{
    prompts_.notice(
        QStringLiteral("You may need to restart the application after you have changed the "
                       "database location! Please note that if you point to an invalid database "
                       "or file the application may hang and you may need to restart."),
        NoticeIcon::Information);
    return prompts_.ok_cancel(
        QStringLiteral("This will change the database location. Do you wish to proceed?"));
}

void DatabaseLocation::change_to_box()
{
    const QString stored = settings_.read(key, absent);
    switch (setting_change(stored, Text25.text())) {
    case SettingChange::First:
        store();
        prompts_.notice(
            QStringLiteral("The database location has been modified and the path stored"));
        break;
    case SettingChange::Different:
        if (!prompts_.ok_cancel(
                QStringLiteral("Are you sure you want to change the database location?"))) {
            Text25.setText(stored);
            return;
        }
        store();
        prompts_.notice(QStringLiteral("Database location changed!!"));
        break;
    case SettingChange::None:
        prompts_.notice(QStringLiteral("This path location is already set"));
        break;
    }
}

void DatabaseLocation::store()
{
    settings_.write(key, Text25.text());
    Data1.set_database_name(Text25.text());
}
