#pragma once

#include "mail/profile_lines.h"

#include <QString>

#include <optional>
#include <vector>

struct StoredProfiles
{
    std::vector<StoredProfile> profiles;
    QStringList damages; // what in the file belongs to no profile, each with its line's number
};

/// The file of a user's mail profiles: a "[profile]" line before each, one key=value a line. Every
/// change is in the file, whole, when it returns; the file is readable by its owner alone. What
/// cannot be read is told and stays in the file, also when another profile is changed.
class ProfileFile
{
public:
    explicit ProfileFile(QString path) : path_(std::move(path)) {}

    /// @throws RuntimeError as read_text_file() when the file is there but cannot be read, 75 when
    /// it is no file or too large to be one of profiles.
    StoredProfiles load() const;

    /// The profile of this name, matched without regard to letter case.
    std::optional<StoredProfile> find(const QString &name) const;

    /// Adds a profile, or puts it in the place of `instead_of`, which load() has returned.
    /// @throws RuntimeError 5 for a profile without a name or with another one's, for values that
    /// are too long or hold control characters, and when `instead_of` is no longer in the file; 75
    /// when the file cannot be written.
    void save(const MailProfile &profile, const std::optional<MailProfile> &instead_of = {});

    /// @throws RuntimeError as save().
    void remove(const MailProfile &profile);

private:
    QString path_;
};
