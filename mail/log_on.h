#pragma once

#include <QString>

#include <optional>

/// How the store asks a person for what sign-on lacks.
class LogOnDialog
{
public:
    virtual ~LogOnDialog() = default;

    /// Asks which inbox to read, telling why. @return the path of a Maildir folder or an mbox file;
    /// nothing when nobody answers.
    virtual std::optional<QString> choose_inbox(const QString &reason) = 0;
};
