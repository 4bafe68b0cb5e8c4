#include "app/table_name.h"

#include "app/setting_change.h"
#include "app/settings_store.h"
#include "db/data_connection.h"
#include "platform/prompts.h"

#include <QLineEdit>

namespace
{
const QString key = QStringLiteral("Table");
}

TableName::TableName(QLineEdit &box, SettingsStore &settings, DataConnection &work_table,
                     Prompts &prompts)
    : Text2(box),
      settings_(settings),
      Data1(work_table),
      prompts_(prompts)
{
}

void TableName::ReadTableName_Click() const
{
    Text2.setText(settings_.read(key));
}

void TableName::ChangeTableName_Click()
{
    if (!prompts_.ok_cancel(QStringLiteral(
            "This will change the name within your database. Do you wish to proceed?")))
        return;
    if (Text2.text().isEmpty()) {
        prompts_.notice(QStringLiteral("Please insert the table name in the text box"));
        return;
    }
    change_from(settings_.read(key));
}

void TableName::change_from(const QString &stored)
{
    switch (setting_change(stored, Text2.text())) {
    case SettingChange::First:
        store();
        prompts_.notice(QStringLiteral("The table name has been modified and stored"));
        break;
    case SettingChange::Different:
        if (!prompts_.ok_cancel(
                QStringLiteral("Are you sure you want to change the table name location?"))) {
            Text2.setText(stored);
            return;
        }
        store();
        prompts_.notice(QStringLiteral("Table name changed!!"));
        break;
    case SettingChange::None:
        prompts_.notice(QStringLiteral("This table name is already set"));
        break;
    }
}

void TableName::store()
{
    settings_.write(key, Text2.text());
    Data1.set_record_source(Statement::typed(settings_.read(key)));
}
