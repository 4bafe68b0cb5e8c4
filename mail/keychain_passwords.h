#pragma once

#include "mail/password_store.h"

#include <chrono>

/// How long a keychain is waited for.
struct KeychainPatience
{
    /// For one that says nothing at all.
    std::chrono::milliseconds silence = std::chrono::seconds(4);
    /// For the person whom it asks for its own password.
    std::chrono::milliseconds person = std::chrono::minutes(2);
};

/// The desktop's keychain (Secret Service or KWallet, through QtKeychain). Blocks its caller while
/// the windows paint. Nothing is ever written elsewhere, least of all in the clear.
class KeychainPasswords : public PasswordStore
{
public:
    explicit KeychainPasswords(KeychainPatience patience = {}) : patience_(patience) {}

    StoredPassword read(const PasswordKey &key) override;
    StoreAnswer write(const PasswordKey &key, const QString &password) override;
    StoreAnswer remove(const PasswordKey &key) override;

private:
    KeychainPatience patience_;
};
