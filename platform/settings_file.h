#pragma once

#include <QString>
#include <QStringList>

/// The folder of the user's settings: $XDG_CONFIG_HOME, else ~/.config. No trailing slash.
QString configuration_folder();

/// A line of a settings file. One that is no key=value (a comment, say) has no key and is kept as
/// it is.
struct SettingLine
{
    QString key;
    QString value; // with its line breaks, which the file holds as %0D and %0A
    QString text;  // the line as read, for one without a key
};

SettingLine parse_setting(const QString &line);
QString format_setting(const SettingLine &line);

/// Replaces the file by these lines: the new content is there whole or not at all, and readable by
/// its owner alone. A missing folder is made.
/// @throws RuntimeError 75 when the file cannot be written; the old content then stays.
void write_settings_file(const QString &path, const QStringList &lines);
