#include "mail/password_store.h"

#include <algorithm>
#include <array>

namespace
{
constexpr std::array uses = {MailUse::Reading, MailUse::Sending};
}

SessionPasswords::Held::key_type SessionPasswords::held_key(const PasswordKey &key)
{
    return {key.profile.toCaseFolded(), key.use};
}

StoredPassword SessionPasswords::find(const PasswordKey &key)
{
    const auto held = held_.find(held_key(key));
    if (held != held_.end())
        return {StoreAnswer::Done, held->second};
    const StoredPassword stored = store_.read(key);
    if (stored.answer == StoreAnswer::Done)
        hold(key, stored.password);
    return stored;
}

void SessionPasswords::hold(const PasswordKey &key, const QString &password)
{
    held_.insert_or_assign(held_key(key), password);
}

bool SessionPasswords::keep(const PasswordKey &key, const QString &password)
{
    hold(key, password);
    return store_.write(key, password) == StoreAnswer::Done;
}

void SessionPasswords::release(const PasswordKey &key)
{
    held_.erase(held_key(key));
}

bool SessionPasswords::remove_all(const QString &profile)
{
    for (const MailUse use : uses)
        release({profile, use});
    // After a store that does not answer the next question would only wait as long again.
    return std::ranges::all_of(uses, [&](MailUse use) {
        return store_.remove({profile, use}) != StoreAnswer::NoStore;
    });
}

bool SessionPasswords::rename(const QString &old_name, const QString &new_name)
{
    if (is_same_profile(old_name, new_name))
        return true;
    for (const MailUse use : uses) {
        if (const auto held = held_.extract(held_key({old_name, use})); !held.empty())
            hold({new_name, use}, held.mapped());
    }
    for (const MailUse use : uses) {
        const StoredPassword stored = store_.read({old_name, use});
        const bool has_come = stored.answer == StoreAnswer::Absent ||
                              (stored.answer == StoreAnswer::Done &&
                               store_.write({new_name, use}, stored.password) == StoreAnswer::Done);
        if (!has_come)
            return false;
    }
    return remove_all(old_name);
}
