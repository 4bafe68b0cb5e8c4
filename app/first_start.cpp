#include "app/first_start.h"

#include "app/help_file.h"
#include "app/settings_store.h"
#include "db/schema.h"
#include "platform/drive_path.h"
#include "platform/runtime_error.h"

#include <QDir>
#include <QFileInfo>

namespace
{
void make_folder(const QString &path)
{
    if (!QDir().mkpath(native_path(path)))
        throw RuntimeError(error_number::path_file_access,
                           QStringLiteral("The folder '%1' cannot be made").arg(path));
}

void make_database(const QString &path)
{
    if (!QFileInfo::exists(native_path(path)))
        create_database(path);
}
} // namespace

void prepare_first_start(const SettingsStore &settings)
{
    if (!settings.read(QStringLiteral("Database")).isEmpty())
        return;
    make_folder(QStringLiteral("C:\\Ostrix"));
    make_database(QStringLiteral("C:\\Ostrix\\Ostrix.mdb"));
    make_database(QStringLiteral("C:\\Velmoradrane.mdb")); // the review window's own
    install_help();
}
