#include "mail/local_mail_store.h"

#include "mail/sign_in_refused.h"

namespace
{
[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::mail_failure, what);
}
} // namespace

void LocalMailStore::open(MailUse use)
{
    const MailProfile &profile = profile_for(use);
    if (use == MailUse::Sending)
        return;
    inbox();
    // Asked for now, not when the line to the server stands and waits. A token ages: it comes late.
    const MailServer *server = server_for(profile, use);
    if (server != nullptr && server->sign_in == SignInKind::Password)
        accounts_.credentials(profile, use);
}

void LocalMailStore::close()
{
    messages_.unbind();
    inbox_.reset();
    profiles_.clear();
}

const MailProfile &LocalMailStore::profile_for(MailUse use)
{
    const auto found = profiles_.find(use);
    if (found != profiles_.end())
        return found->second;
    return profiles_.emplace(use, accounts_.profile_for(session_.UserName(), use)).first->second;
}

Inbox &LocalMailStore::inbox()
{
    if (inbox_ == nullptr) {
        const MailProfile &profile = profile_for(MailUse::Reading);
        inbox_ = open_inbox_(
            profile, [this, profile] { return accounts_.credentials(profile, MailUse::Reading); });
    }
    return *inbox_;
}

void LocalMailStore::fetch_inbox()
{
    const MailProfile &profile = profile_for(MailUse::Reading);
    for (;;) {
        try {
            inbox().fetch();
            accounts_.accepted(profile, MailUse::Reading);
            return;
        } catch (const SignInRefused &refusal) {
            if (!accounts_.ask_again(profile, MailUse::Reading, refusal.description()))
                throw;
        }
    }
}

void LocalMailStore::Session::SignOn()
{
    handle_ = 0;
    store_.close();
    store_.open(download_mail_ ? MailUse::Reading : MailUse::Sending);
    handle_ = ++last_handle_;
}

void LocalMailStore::Session::SignOff()
{
    store_.close();
    handle_ = 0;
    download_mail_ = true;
}

void LocalMailStore::Messages::set_SessionID(int handle)
{
    if (handle == 0 || handle != store_.session_.SessionID())
        fail(QStringLiteral("No mail session is open with the handle %1.").arg(handle));
    unbind();
    is_bound_ = true;
}

void LocalMailStore::Messages::Fetch()
{
    const Inbox &inbox = bound_inbox();
    current_.reset();
    count_ = 0;
    store_.fetch_inbox();
    count_ = inbox.count();
}

void LocalMailStore::Messages::set_MsgIndex(int index)
{
    constexpr int compose_buffer = -1;
    current_.reset();
    if (index == compose_buffer)
        return;
    if (index < 0 || index >= count_)
        throw RuntimeError(error_number::subscript_out_of_range,
                           QStringLiteral("There is no message number %1: %2 were fetched.")
                               .arg(index)
                               .arg(count_));
    current_ = bound_inbox().read(index);
}

Inbox &LocalMailStore::Messages::bound_inbox()
{
    if (!is_bound_)
        fail(QStringLiteral("The message set is not bound to an open mail session."));
    return store_.inbox();
}

const MessageFields &LocalMailStore::Messages::current() const
{
    if (!current_)
        fail(QStringLiteral("No message is current in the message set."));
    return *current_;
}

void LocalMailStore::Messages::unbind()
{
    is_bound_ = false;
    count_ = 0;
    current_.reset();
}

void LocalMailStore::Messages::refuse_to_send()
{
    fail(QStringLiteral("Sending is not built yet"));
}

void LocalMailStore::Messages::set_RecipIndex(int)
{
    refuse_to_send();
}

void LocalMailStore::Messages::set_RecipType(int)
{
    refuse_to_send();
}

void LocalMailStore::Messages::set_RecipAddress(const QString &)
{
    refuse_to_send();
}

void LocalMailStore::Messages::ResolveName()
{
    refuse_to_send();
}

void LocalMailStore::Messages::set_MsgSubject(const QString &)
{
    refuse_to_send();
}

void LocalMailStore::Messages::set_MsgNoteText(const QString &)
{
    refuse_to_send();
}

void LocalMailStore::Messages::set_AttachmentPathName(const QString &)
{
    refuse_to_send();
}

void LocalMailStore::Messages::Send(bool)
{
    refuse_to_send();
}

void LocalMailStore::Messages::Copy()
{
    refuse_to_send();
}
