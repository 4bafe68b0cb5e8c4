#include "app/settings_store.h"

#include "platform/drive_path.h"
#include "platform/runtime_error.h"
#include "platform/settings_file.h"
#include "platform/text_file.h"

#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace
{
using Entries = std::vector<SettingLine>;

Entries read_entries(const QString &file)
{
    Entries entries;
    if (!QFileInfo::exists(file))
        return entries;
    const QStringList lines = read_lines(file);
    for (const QString &line : lines)
        entries.push_back(parse_setting(line));
    return entries;
}

void write_entries(const QString &path, const Entries &entries)
{
    QStringList lines;
    for (const SettingLine &entry : entries)
        lines += format_setting(entry);
    write_settings_file(path, lines);
}

auto has_key(const QString &key)
{
    return [key](const SettingLine &entry) {
        return entry.key.compare(key, Qt::CaseInsensitive) == 0;
    };
}

auto find_entry(Entries &entries, const QString &key)
{
    return std::find_if(entries.begin(), entries.end(), has_key(key));
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
