#pragma once

#include "mail/keychain_passwords.h"
#include "mail/profile_desk.h"
#include "mail/profile_mail_store.h"

/// The store's own dialogs. Each may be null: nobody is there to be asked; else it outlives whom it
/// is given to.
struct StoreDialogs
{
    LogOnDialog *log_on = nullptr;
    SendDialog *send = nullptr;
};

/// All that stands behind the mail store in the program: the profiles in their file, the desktop's
/// keychain, the servers, this machine's own mail.
class UserMail
{
public:
    /// @param profile_file  the file of the mail profiles, which need not exist.
    explicit UserMail(const QString &profile_file, const StoreDialogs &dialogs = {},
                      NetworkConditions conditions = {});

    MailStore &store() { return store_; }
    MailAccounts &accounts() { return accounts_; }
    /// What it runs makes the store busy. This outlives it.
    ProfileDesk profile_desk();

private:
    NetworkConditions conditions_;
    KeychainPasswords keychain_;
    MailAccounts accounts_;
    ProfileMailStore store_;
};
