#pragma once

#include <QString>

/// The per-user settings store: (application, section, key) → text. Names are matched without
/// regard to letter case. Every write is in the file, whole, when it returns; the file is readable
/// by its owner alone. Kept in $XDG_CONFIG_HOME (else ~/.config) as "<application>/<section>.ini",
/// one key=value a line.
class SettingsStore
{
public:
    inline static const QString application = QStringLiteral("Pendral");
    inline static const QString section = QStringLiteral("eAPP");

    /// @return the stored text, or `fallback` when the key is absent.
    /// @throws RuntimeError as read_text_file() when the file is there but cannot be read.
    QString read(const QString &key, const QString &fallback = {}) const;
    QString read(const QString &application, const QString &section, const QString &key,
                 const QString &fallback) const;

    /// @throws RuntimeError 75 when the file cannot be written; the old content then stays.
    void write(const QString &key, const QString &value);

    /// @throws RuntimeError 5 when the key is absent; as write() otherwise.
    void remove(const QString &key);
};

/// The file of an application's section, matched without regard to letter case; where it would be
/// made when it does not exist.
QString settings_file(const QString &application, const QString &section);
