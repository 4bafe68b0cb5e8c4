#include "send/group_list.h"

#include "platform/drive_path.h"

QString group_file(const QString &folder, const QString &name)
{
    const QString file = name + QStringLiteral(".txt");
    if (has_drive_letter(name) || name.startsWith(QLatin1Char('/')))
        return file;
    const QChar separator = QLatin1Char(has_drive_letter(folder) ? '\\' : '/');
    return folder.endsWith(separator) ? folder + file : folder + separator + file;
}
