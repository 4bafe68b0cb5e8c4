#include "platform/drive_path.h"

#include "platform/runtime_error.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

bool has_drive_letter(const QString &path)
{
    return path.size() >= 3 && path[0].isLetter() && path[0].unicode() < 0x80 &&
           path[1] == QLatin1Char(':') &&
           (path[2] == QLatin1Char('\\') || path[2] == QLatin1Char('/'));
}

QString existing_name(const QString &folder, const QString &component)
{
    if (QFileInfo::exists(folder + QLatin1Char('/') + component))
        return component;
    const auto filter = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QStringList names = QDir(folder).entryList(filter, QDir::Name);
    for (const QString &name : names) {
        if (name.compare(component, Qt::CaseInsensitive) == 0)
            return name;
    }
    return component;
}

QString data_folder()
{
    const QString configured = qEnvironmentVariable("XDG_DATA_HOME");
    // The XDG base directory rules: a relative path there is to be ignored.
    if (QDir::isAbsolutePath(configured))
        return QDir::cleanPath(configured);
    return QDir::homePath() + QStringLiteral("/.local/share");
}

QString native_path(const QString &path)
{
    if (!has_drive_letter(path))
        return path;
    if (path[0].toLower() != QLatin1Char('c'))
        throw RuntimeError(
            error_number::path_not_found,
            QStringLiteral("Path not found: there is no drive %1: in '%2'").arg(path[0]).arg(path));
    QString inside = path.mid(3);
    inside.replace(QLatin1Char('\\'), QLatin1Char('/'));
    QString native = data_folder();
    const QStringList components = inside.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString &component : components)
        native += QLatin1Char('/') + existing_name(native, component);
    return native;
}
