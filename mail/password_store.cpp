#include "mail/password_store.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace
{
constexpr std::array uses = {MailUse::Reading, MailUse::Sending};
}

bool PasswordKey::operator<(const PasswordKey &other) const
{
    const QString name = profile.toCaseFolded();
    const QString other_name = other.profile.toCaseFolded();
    return std::tie(name, use, account) < std::tie(other_name, other.use, other.account);
}

bool PasswordKey::operator==(const PasswordKey &other) const
{
    return !(*this < other) && !(other < *this);
}

PasswordKey password_key(const MailProfile &profile, MailUse use)
{
    const MailServer *server = server_for(profile, use);
    if (server == nullptr)
        return {profile.name, use, {}};
    MailServer named = *server;
    named.host = named.host.toLower();
    return {profile.name, use, sign_on_name(named)};
}

StoredPassword SessionPasswords::find(const PasswordKey &key)
{
    const auto held = held_.find(key);
    if (held != held_.end())
        return {StoreAnswer::Done, held->second};
    const StoredPassword stored = store_.read(key);
    if (stored.answer == StoreAnswer::Done)
        hold(key, stored.password);
    return stored;
}

void SessionPasswords::hold(const PasswordKey &key, const QString &password)
{
    held_.insert_or_assign(key, password);
}

bool SessionPasswords::keep(const PasswordKey &key, const QString &password)
{
    hold(key, password);
    return store_.write(key, password) == StoreAnswer::Done;
}

void SessionPasswords::release(const PasswordKey &key)
{
    held_.erase(key);
}

bool SessionPasswords::remove_all(const MailProfile &profile)
{
    for (const MailUse use : uses)
        release(password_key(profile, use));
    // After a store that does not answer the next question would only wait as long again.
    return std::ranges::all_of(uses, [&](MailUse use) {
        return server_for(profile, use) == nullptr ||
               store_.remove(password_key(profile, use)) != StoreAnswer::NoStore;
    });
}

bool SessionPasswords::take_along(const MailProfile &before, const MailProfile &now)
{
    bool answers = true;
    for (const MailUse use : uses) {
        const PasswordKey old_key = password_key(before, use);
        const PasswordKey new_key = password_key(now, use);
        if (old_key == new_key || server_for(before, use) == nullptr)
            continue;
        const bool stays = old_key.account == new_key.account;
        if (const auto held = held_.extract(old_key); !held.empty() && stays)
            hold(new_key, held.mapped());
        answers = answers && (!stays || copy(old_key, new_key)) &&
                  store_.remove(old_key) != StoreAnswer::NoStore;
    }
    return answers;
}

bool SessionPasswords::copy(const PasswordKey &from, const PasswordKey &to)
{
    const StoredPassword stored = store_.read(from);
    return stored.answer == StoreAnswer::Absent ||
           (stored.answer == StoreAnswer::Done &&
            store_.write(to, stored.password) == StoreAnswer::Done);
}
