#include "app/start_up.h"

#include "app/activity_log.h"
#include "app/settings_store.h"
#include "db/data_connection.h"
#include "db/grid_columns.h"
#include "platform/twips.h"

#include <QLineEdit>

namespace
{
const QString log_file_key = QStringLiteral("log file");
const QString database_key = QStringLiteral("Database");
const QString default_database = QStringLiteral("C:\\Ostrix\\Ostrix.mdb");

void write_default(SettingsStore &settings, const QString &key, const QString &value)
{
    if (settings.read(key).isEmpty())
        settings.write(key, value);
}

void point_at_database(const StartUp &window)
{
    const QString path = window.settings.read(database_key);
    window.Data1.set_database_name(path);
    window.Data2.set_database_name(path);
    window.controls.Text25.setText(path);
}
} // namespace

void start_up(const StartUp &window)
{
    write_default(window.settings, log_file_key, ActivityLog::deletion_log);
    window.controls.Text17.setText(window.settings.read(log_file_key));
    // This step and the assignments below are made twice, as they always were; that is harmless.
    window.controls.Text17.setText(window.settings.read(log_file_key));
    write_default(window.settings, database_key, default_database);
    point_at_database(window);
    point_at_database(window);
    window.show_first_tab();
    set_column_widths(window.controls.MSFlexGrid5, master_list_widths());
    set_column_widths(window.controls.MSFlexGrid1, work_table_widths());
}
