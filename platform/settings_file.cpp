#include "platform/settings_file.h"

#include "platform/runtime_error.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace
{
constexpr auto owner_only = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// A line break in a value would end its line: %0D and %0A stand for its two halves, %25 for the
// sign itself. Backslashes stay, so that a person can read and write a path.
QString escaped(QString value)
{
    value.replace(QLatin1String("%"), QLatin1String("%25"));
    value.replace(QLatin1Char('\r'), QLatin1String("%0D"));
    return value.replace(QLatin1Char('\n'), QLatin1String("%0A"));
}

QString unescaped(QString value)
{
    value.replace(QLatin1String("%0A"), QLatin1String("\n"));
    value.replace(QLatin1String("%0D"), QLatin1String("\r"));
    return value.replace(QLatin1String("%25"), QLatin1String("%"));
}
} // namespace

QString configuration_folder()
{
    const QString configured = qEnvironmentVariable("XDG_CONFIG_HOME");
    // The XDG base directory rules: a relative path there is to be ignored.
    return QDir::isAbsolutePath(configured) ? QDir::cleanPath(configured)
                                            : QDir::homePath() + QStringLiteral("/.config");
}

SettingLine parse_setting(const QString &line)
{
    const qsizetype equals = line.indexOf(QLatin1Char('='));
    if (equals <= 0)
        return {{}, {}, line};
    return {line.left(equals), unescaped(line.mid(equals + 1)), line};
}

QString format_setting(const SettingLine &line)
{
    return line.key.isEmpty() ? line.text : line.key + QLatin1Char('=') + escaped(line.value);
}

void write_settings_file(const QString &path, const QStringList &lines)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    QByteArray bytes;
    for (const QString &line : lines)
        bytes += line.toUtf8() + '\n';
    const bool written = file.open(QIODevice::WriteOnly) && file.setPermissions(owner_only) &&
                         file.write(bytes) == bytes.size() && file.commit();
    if (!written)
        throw RuntimeError(error_number::path_file_access,
                           QStringLiteral("The settings cannot be written to '%1' (%2)")
                               .arg(path, file.errorString()));
}
