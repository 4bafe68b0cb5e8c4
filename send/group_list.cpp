#include "send/group_list.h"

namespace
{
bool has_drive(const QString &path)
{
    return path.size() > 1 && path[0].isLetter() && path[1] == QLatin1Char(':');
}
} // namespace

QString group_file(const QString &folder, const QString &name)
{
    const QString file = name + QStringLiteral(".txt");
    if (has_drive(name) || name.startsWith(QLatin1Char('/')))
        return file;
    const QChar separator = QLatin1Char(has_drive(folder) ? '\\' : '/');
    return folder.endsWith(separator) ? folder + file : folder + separator + file;
}
