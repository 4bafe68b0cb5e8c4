#include "app/settings_store.h"

#include "platform/drive_path.h"
#include "platform/runtime_error.h"
#include "platform/text_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <vector>

namespace
{
// A line that is no key=value (a comment, say) has no key and is kept as it is.
struct Entry
{
    QString key;
    QString value;
    QString line;
};
using Entries = std::vector<Entry>;

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

Entry entry_of(const QString &line)
{
    const qsizetype equals = line.indexOf(QLatin1Char('='));
    if (equals <= 0)
        return {{}, {}, line};
    return {line.left(equals), unescaped(line.mid(equals + 1)), line};
}

Entries read_entries(const QString &file)
{
    Entries entries;
    if (!QFileInfo::exists(file))
        return entries;
    const QStringList lines = read_lines(file);
    for (const QString &line : lines)
        entries.push_back(entry_of(line));
    return entries;
}

QString line_of(const Entry &entry)
{
    return entry.key.isEmpty() ? entry.line : entry.key + QLatin1Char('=') + escaped(entry.value);
}

void write_entries(const QString &path, const Entries &entries)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    QByteArray bytes;
    for (const Entry &entry : entries)
        bytes += line_of(entry).toUtf8() + '\n';
    const bool written = file.open(QIODevice::WriteOnly) && file.setPermissions(owner_only) &&
                         file.write(bytes) == bytes.size() && file.commit();
    if (!written)
        throw RuntimeError(error_number::path_file_access,
                           QStringLiteral("The settings cannot be written to '%1' (%2)")
                               .arg(path, file.errorString()));
}

auto has_key(const QString &key)
{
    return [key](const Entry &entry) { return entry.key.compare(key, Qt::CaseInsensitive) == 0; };
}

auto find_entry(Entries &entries, const QString &key)
{
    return std::find_if(entries.begin(), entries.end(), has_key(key));
}

QString configuration_folder()
{
    const QString configured = qEnvironmentVariable("XDG_CONFIG_HOME");
    // The XDG base directory rules: a relative path there is to be ignored.
    return QDir::isAbsolutePath(configured) ? QDir::cleanPath(configured)
                                            : QDir::homePath() + QStringLiteral("/.config");
}
} // namespace

QString settings_file(const QString &application, const QString &section)
{
    QString path = configuration_folder();
    for (const QString &name : {application, section + QStringLiteral(".ini")})
        path += QLatin1Char('/') + existing_name(path, name);
    return path;
}

QString SettingsStore::read(const QString &key, const QString &fallback) const
{
    return read(application, section, key, fallback);
}

QString SettingsStore::read(const QString &application_name, const QString &section_name,
                            const QString &key, const QString &fallback) const
{
    Entries entries = read_entries(settings_file(application_name, section_name));
    const auto found = find_entry(entries, key);
    return found == entries.end() ? fallback : found->value;
}

void SettingsStore::write(const QString &key, const QString &value)
{
    const QString file = settings_file(application, section);
    Entries entries = read_entries(file);
    const auto found = find_entry(entries, key);
    if (found == entries.end())
        entries.push_back({key, value, {}});
    else
        found->value = value;
    write_entries(file, entries);
}

void SettingsStore::remove(const QString &key)
{
    const QString file = settings_file(application, section);
    Entries entries = read_entries(file);
    if (std::erase_if(entries, has_key(key)) == 0)
        throw RuntimeError(error_number::invalid_call,
                           QStringLiteral("There is no setting '%1'").arg(key));
    write_entries(file, entries);
}
