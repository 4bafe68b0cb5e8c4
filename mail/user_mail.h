#pragma once

#include "mail/keychain_passwords.h"
#include "mail/local_mail_store.h"
#include "mail/profile_desk.h"

/// All that stands behind the mail store in the program: the profiles in their file, the desktop's
/// keychain, the servers, this machine's own mail.
class UserMail
{
public:
    /// @param profile_file  the file of the mail profiles, which need not exist.
    /// @param dialog, send_dialog  may be null: nobody is there to ask; else they outlive this.
    explicit UserMail(const QString &profile_file, LogOnDialog *dialog = nullptr,
                      SendDialog *send_dialog = nullptr, NetworkConditions conditions = {});

    MailStore &store() { return store_; }
    MailAccounts &accounts() { return accounts_; }
    ProfileDesk profile_desk();

private:
    NetworkConditions conditions_;
    KeychainPasswords keychain_;
    MailAccounts accounts_;
    LocalMailStore store_;
};
