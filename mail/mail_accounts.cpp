#include "mail/mail_accounts.h"

#include "mail/local_inbox.h"
#include "mail/log_on.h"
#include "platform/runtime_error.h"

namespace
{
[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::mail_failure, what);
}

QString unnamed_profile_lacks(MailUse use)
{
    if (use == MailUse::Sending || !local_inbox().isEmpty())
        return {};
    return QStringLiteral("No local inbox was found. Looked for: %1")
        .arg(local_inbox_places().join(QStringLiteral(", ")));
}

// The kind that a profile says and what its path holds must agree: what is read is no guess.
QString missing_on_disk(const MailProfile &profile)
{
    const LocalInboxKind found = local_inbox_kind(profile.inbox_path);
    if (profile.inbox == InboxKind::Local)
        return unnamed_profile_lacks(MailUse::Reading);
    if (profile.inbox == InboxKind::Maildir && found != LocalInboxKind::Maildir)
        return QStringLiteral("There is no Maildir folder '%1'.").arg(profile.inbox_path);
    if (profile.inbox == InboxKind::Mbox && found != LocalInboxKind::Mbox)
        return QStringLiteral("There is no mailbox file '%1'.").arg(profile.inbox_path);
    return {};
}

/// What sign-on lacks, as whole sentences; empty for nothing.
QString lacking(const std::optional<StoredProfile> &stored, const QString &name, MailUse use)
{
    if (!stored)
        return QStringLiteral("There is no mail profile named '%1'.").arg(name);
    if (!stored->is_sound())
        return QStringLiteral("The mail profile '%1' is damaged: %2.")
            .arg(name, stored->damages.join(QStringLiteral("; ")));
    if (const QString missing = missing_in(stored->profile, use); !missing.isEmpty())
        return QStringLiteral("The mail profile '%1' is incomplete: %2.").arg(name, missing);
    const QString missing = use == MailUse::Reading ? missing_on_disk(stored->profile) : QString();
    return missing.isEmpty()
               ? QString()
               : QStringLiteral("The mail profile '%1' cannot be read. %2").arg(name, missing);
}

MailProfile inbox_profile(const QString &name, const QString &path)
{
    MailProfile profile;
    profile.name = name;
    profile.inbox =
        local_inbox_kind(path) == LocalInboxKind::Maildir ? InboxKind::Maildir : InboxKind::Mbox;
    profile.inbox_path = path;
    return profile;
}

QString no_password(const MailProfile &profile, MailUse use, StoreAnswer answer)
{
    const QString why = answer == StoreAnswer::NoStore
                            ? QStringLiteral("no keychain of the desktop answered")
                            : QStringLiteral("the desktop's keychain holds none");
    return QStringLiteral("The mail profile '%1' needs the password of %2 (%3), and %4.")
        .arg(profile.name, sign_on_name(*server_for(profile, use)), protocol_name(profile, use),
             why);
}
} // namespace

MailAccounts::MailAccounts(ProfileFile profiles, PasswordStore &keychain, LogOnDialog *dialog,
                           TokenPatience patience)
    : profiles_(std::move(profiles)),
      passwords_(keychain),
      dialog_(dialog),
      patience_(std::move(patience))
{
}

MailProfile MailAccounts::profile_for(const QString &name, MailUse use)
{
    if (name.isEmpty()) {
        const QString missing = unnamed_profile_lacks(use);
        return missing.isEmpty() ? MailProfile() : ask_for_account(name, use, missing);
    }
    const auto stored = profiles_.find(name);
    const QString missing = lacking(stored, name, use);
    return missing.isEmpty() ? stored->profile : ask_for_account(name, use, missing);
}

MailProfile MailAccounts::ask_for_account(const QString &name, MailUse use, const QString &reason)
{
    const auto answer =
        dialog_ == nullptr
            ? std::nullopt
            : dialog_->choose_account({reason, sound_profiles(), use == MailUse::Reading});
    if (!answer)
        fail(reason);
    if (answer->profile.isEmpty())
        return inbox_profile(name, answer->inbox_path);
    return profile_for(answer->profile, use);
}

QStringList MailAccounts::sound_profiles() const
{
    StoredProfiles all;
    attempt([&] { all = profiles_.load(); });
    QStringList names;
    for (const StoredProfile &stored : all.profiles) {
        if (stored.is_sound())
            names += stored.profile.name;
    }
    return names;
}

Credentials MailAccounts::credentials(const MailProfile &profile, MailUse use)
{
    const MailServer *server = server_for(profile, use);
    if (server == nullptr || server->sign_in == SignInKind::None)
        return {};
    const QString secret = server->sign_in == SignInKind::Token
                               ? run_token_command(server->token_command, patience_)
                               : password(profile, use);
    return {server->sign_in, server->user, secret};
}

QString MailAccounts::password(const MailProfile &profile, MailUse use)
{
    const PasswordKey key = password_key(profile, use);
    const StoredPassword found = passwords_.find(key);
    if (found.answer == StoreAnswer::Done)
        return found.password;
    const QString reason = no_password(profile, use, found.answer);
    const PasswordQuestion question{reason, sign_on_name(*server_for(profile, use)),
                                    found.answer == StoreAnswer::Absent};
    if (!ask_for_password(profile, use, question))
        fail(reason);
    return passwords_.find(key).password;
}

bool MailAccounts::ask_for_password(const MailProfile &profile, MailUse use,
                                    const PasswordQuestion &question)
{
    const auto answer = dialog_ == nullptr ? std::nullopt : dialog_->ask_password(question);
    if (!answer)
        return false;
    passwords_.hold(password_key(profile, use), answer->password);
    if (answer->remember)
        to_remember_.insert(password_key(profile, use));
    else
        to_remember_.erase(password_key(profile, use));
    return true;
}

void MailAccounts::accepted(const MailProfile &profile, MailUse use)
{
    if (to_remember_.erase(password_key(profile, use)) == 0)
        return;
    // A keychain that has gone meanwhile leaves the password to this session: it is asked for again
    // in the next one.
    const PasswordKey key = password_key(profile, use);
    passwords_.keep(key, passwords_.find(key).password);
}

bool MailAccounts::ask_again(const MailProfile &profile, MailUse use, const QString &words)
{
    const MailServer *server = server_for(profile, use);
    if (server == nullptr || server->sign_in != SignInKind::Password)
        return false;
    if (dialog_ == nullptr)
        return false;
    // What is held stays until there is an answer: the server may take it the next time.
    return ask_for_password(
        profile, use,
        {QStringLiteral("The server refused the password. It said: %1").arg(words),
         sign_on_name(*server), passwords_.has_store(password_key(profile, use))});
}
