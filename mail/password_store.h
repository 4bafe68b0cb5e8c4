#pragma once

#include "mail/profile_rules.h"

#include <QString>

#include <map>

/// Whose password: that of a user on a server, which a profile reads from or sends by. A profile
/// that names another server or user has another key: nobody is given what belongs to another.
struct PasswordKey
{
    QString profile;
    MailUse use = MailUse::Reading;
    QString account; // "ann on mail.example.org"

    /// Names of profiles are matched without regard to letter case.
    bool operator<(const PasswordKey &other) const;
    bool operator==(const PasswordKey &other) const;
};

/// The key of the password that this use of the profile needs; without an account when it takes no
/// server.
PasswordKey password_key(const MailProfile &profile, MailUse use);

/// What a password store says to a question.
enum class StoreAnswer {
    Done,
    Absent, // it holds no such password
    NoStore // nobody answered, or the answer was a failure
};

struct StoredPassword
{
    StoreAnswer answer = StoreAnswer::NoStore;
    QString password; // with StoreAnswer::Done
};

/// Where passwords outlive the program. None of these throws.
class PasswordStore
{
public:
    virtual ~PasswordStore() = default;

    virtual StoredPassword read(const PasswordKey &key) = 0;
    virtual StoreAnswer write(const PasswordKey &key, const QString &password) = 0;
    virtual StoreAnswer remove(const PasswordKey &key) = 0;
};

/// Passwords as this run of the program knows them, over a store that outlives it.
class SessionPasswords
{
public:
    /// @param store  outlives this.
    explicit SessionPasswords(PasswordStore &store) : store_(store) {}

    /// What was held in this session, else what the store has; the store is asked once for a
    /// password that it has.
    StoredPassword find(const PasswordKey &key);
    /// Holds a password until the program ends.
    void hold(const PasswordKey &key, const QString &password);
    /// Holds it, and puts it into the store. @return whether the store took it.
    bool keep(const PasswordKey &key, const QString &password);
    /// Forgets what was held, not what the store has.
    void release(const PasswordKey &key);
    /// Whether the store answers, when it is asked for this password.
    bool has_store(const PasswordKey &key)
    {
        return store_.read(key).answer != StoreAnswer::NoStore;
    }
    /// Forgets a profile's passwords, in the store too. @return whether the store holds none any
    /// more: one that does not answer keeps what it has.
    bool remove_all(const MailProfile &profile);
    /// Takes a profile's passwords along when it changes: a new name keeps them; those of a server
    /// or user that it no longer names are forgotten, in the store too.
    /// @return whether the store took part: one that does not answer keeps what it has for the
    /// profile as it was.
    bool take_along(const MailProfile &before, const MailProfile &now);

private:
    bool copy(const PasswordKey &from, const PasswordKey &to);

    PasswordStore &store_;
    std::map<PasswordKey, QString> held_;
};
