#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// Asks what a session signs on with, when its profile does not say.
struct AccountQuestion
{
    QString reason;
    QStringList profiles;    // the mail profiles that there are
    bool takes_inbox = true; // false for a session that sends: an inbox would not help it
};

/// One of the two; the other is empty.
struct AccountAnswer
{
    QString profile;
    QString inbox_path; // a Maildir folder or an mbox file
};

struct PasswordQuestion
{
    QString reason;
    QString server;            // "ann on mail.example.org"
    bool can_remember = false; // whether a keychain answers
};

struct PasswordAnswer
{
    QString password;
    bool remember = false;
};

/// How the store asks a person for what sign-on lacks. Nothing is returned when nobody answers.
class LogOnDialog
{
public:
    virtual ~LogOnDialog() = default;

    virtual std::optional<AccountAnswer> choose_account(const AccountQuestion &question) = 0;
    virtual std::optional<PasswordAnswer> ask_password(const PasswordQuestion &question) = 0;
};
