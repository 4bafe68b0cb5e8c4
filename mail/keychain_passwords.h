#pragma once

#include "mail/password_store.h"

#include <chrono>

/// The desktop's keychain (Secret Service or KWallet, through QtKeychain). Blocks its caller while
/// the windows paint; a service that stays silent is given up after `patience`. Nothing is ever
/// written elsewhere, least of all in the clear.
class KeychainPasswords : public PasswordStore
{
public:
    explicit KeychainPasswords(std::chrono::milliseconds patience = std::chrono::seconds(4))
        : patience_(patience)
    {
    }

    StoredPassword read(const PasswordKey &key) override;
    StoreAnswer write(const PasswordKey &key, const QString &password) override;
    StoreAnswer remove(const PasswordKey &key) override;

private:
    std::chrono::milliseconds patience_;
};
