#pragma once

#include "mail/profile_rules.h"

#include <QString>

#include <map>
#include <utility>

/// Whose password: that of a profile's server for reading or for sending.
struct PasswordKey
{
    QString profile;
    MailUse use = MailUse::Reading;
};

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
    bool remove_all(const QString &profile);
    /// Takes a profile's passwords along to its new name; what was held is held under that alone.
    /// @return whether all have come along: a store that does not answer keeps what it has under
    /// the old name.
    bool rename(const QString &old_name, const QString &new_name);

private:
    using Held = std::map<std::pair<QString, MailUse>, QString>;
    static Held::key_type held_key(const PasswordKey &key);

    PasswordStore &store_;
    Held held_;
};
