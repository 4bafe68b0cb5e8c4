#pragma once

#include "mail/mail_profile.h"

#include <QStringList>

/// A profile as it stands in its file.
struct StoredProfile
{
    MailProfile profile; // what could be read
    QStringList damages; // what could not, each with its line's number; empty for a sound one

    bool is_sound() const { return damages.isEmpty(); }
};

/// The lines of a profile in a settings file, "key=value" each; what is as in a new profile is left
/// out.
QStringList profile_lines(const MailProfile &profile);

/// What a profile says that would be a damage when it is read back ("'inbox user' holds a control
/// character"); empty for nothing.
QString unfit_in(const MailProfile &profile);

/// Reads such lines. Unknown keys, values that are none of their key's, values that are too long or
/// hold control characters, and a missing name are damages; empty lines and comments ('#', ';') are
/// passed over.
/// @param first_number  the number of the first of the lines in its file.
StoredProfile read_profile(const QStringList &lines, qsizetype first_number);

/// Whether a line is empty or a comment.
bool is_comment(const QString &line);
