#pragma once

#include "mail/password_store.h"
#include "mail/profile_file.h"
#include "mail/token_command.h"

#include <set>

class LogOnDialog;
struct PasswordQuestion;

/// A user's mail profiles, and what signs on to their servers. What is missing is asked for in the
/// log-on dialog; without an answer it is RuntimeError 32000 that tells what was missing.
class MailAccounts
{
public:
    /// @param keychain  outlives this.
    /// @param dialog    may be null: nobody is there to ask; else it outlives this.
    MailAccounts(ProfileFile profiles, PasswordStore &keychain, LogOnDialog *dialog = nullptr,
                 TokenPatience patience = {});

    /// The profile of this name, complete for its use. The empty name is the profile of a user who
    /// made none: the local inbox, the sendmail program. An inbox of this machine must be there.
    /// An inbox that the dialog answers comes as a profile of the same name.
    MailProfile profile_for(const QString &name, MailUse use);

    /// What signs on to the profile's server: its password, as known in this session, else from the
    /// keychain, else asked for; or a token, which its command prints anew each time.
    Credentials credentials(const MailProfile &profile, MailUse use);

    /// The server took the credentials: a password that is to be remembered goes to the keychain.
    void accepted(const MailProfile &profile, MailUse use);
    /// The server refused them, in these words: asks for another password. @return false when none
    /// is to be had (nobody answers, the server takes no password).
    bool ask_again(const MailProfile &profile, MailUse use, const QString &words);

    ProfileFile &profiles() { return profiles_; }
    SessionPasswords &passwords() { return passwords_; }

    /// The names of the profiles that can be signed on with, for a choice; none when their file
    /// cannot be read.
    QStringList sound_profiles() const;

private:
    MailProfile ask_for_account(const QString &name, MailUse use, const QString &reason);
    QString password(const MailProfile &profile, MailUse use);
    bool ask_for_password(const MailProfile &profile, MailUse use,
                          const PasswordQuestion &question);

    ProfileFile profiles_;
    SessionPasswords passwords_;
    LogOnDialog *dialog_;
    TokenPatience patience_;
    std::set<PasswordKey> to_remember_; // once a server has taken them
};
