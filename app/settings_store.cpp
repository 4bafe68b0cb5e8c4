#include "app/settings_store.h"

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
struct Entry
{
    QString key;
    QString value;
};
using Entries = std::vector<Entry>;

constexpr auto owner_only = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// A line is key=value, where \\, \n and \r stand for the characters that would break it; a
// backslash before any other character stands for itself, so that a person may write a path as it
// is.
QString escaped(QString value)
{
    value.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    value.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return value.replace(QLatin1Char('\r'), QLatin1String("\\r"));
}

QString unescaped(const QString &written)
{
    QString value;
    for (qsizetype i = 0; i < written.size(); ++i) {
        const QChar next = i + 1 < written.size() ? written[i + 1] : QChar();
        const bool escape = written[i] == QLatin1Char('\\') &&
                            QStringLiteral("\\nr").contains(next) && !next.isNull();
        if (!escape) {
            value += written[i];
            continue;
        }
        value += next == QLatin1Char('n')   ? QLatin1Char('\n')
                 : next == QLatin1Char('r') ? QLatin1Char('\r')
                                            : next;
        ++i;
    }
    return value;
}

Entries read_entries(const QString &file)
{
    Entries entries;
    if (!QFileInfo::exists(file))
        return entries;
    const QStringList lines = read_lines(file);
    for (const QString &line : lines) {
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals > 0)
            entries.push_back({line.left(equals), unescaped(line.mid(equals + 1))});
    }
    return entries;
}

void write_entries(const QString &path, const Entries &entries)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    QByteArray bytes;
    for (const Entry &entry : entries)
        bytes += (entry.key + QLatin1Char('=') + escaped(entry.value) + QLatin1Char('\n')).toUtf8();
    const bool written = file.open(QIODevice::WriteOnly) && file.setPermissions(owner_only) &&
                         file.write(bytes) == bytes.size() && file.commit();
    if (!written)
        throw RuntimeError(error_number::path_file_access,
                           QStringLiteral("The settings cannot be written to '%1' (%2)")
                               .arg(path, file.errorString()));
}

auto find_entry(Entries &entries, const QString &key)
{
    return std::find_if(entries.begin(), entries.end(), [&](const Entry &entry) {
        return entry.key.compare(key, Qt::CaseInsensitive) == 0;
    });
}

QString existing_entry(const QString &folder, const QString &name)
{
    const QStringList names =
        QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &candidate : names) {
        if (candidate.compare(name, Qt::CaseInsensitive) == 0)
            return folder + QLatin1Char('/') + candidate;
    }
    return folder + QLatin1Char('/') + name;
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
    const QString folder = existing_entry(configuration_folder(), application);
    return existing_entry(folder, section + QStringLiteral(".ini"));
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
        entries.push_back({key, value});
    else
        found->value = value;
    write_entries(file, entries);
}

void SettingsStore::remove(const QString &key)
{
    const QString file = settings_file(application, section);
    Entries entries = read_entries(file);
    const auto found = find_entry(entries, key);
    if (found == entries.end())
        throw RuntimeError(error_number::invalid_call,
                           QStringLiteral("There is no setting '%1'").arg(key));
    entries.erase(found);
    write_entries(file, entries);
}
