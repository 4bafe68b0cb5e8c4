#include "mail/profile_mail_store.h"

#include "mail/sign_in_refused.h"

namespace
{
[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::mail_failure, what);
}
} // namespace

void ProfileMailStore::open(MailUse use)
{
    profile_for(use);
    if (use == MailUse::Sending)
        return;
    inbox();
    need_password(use);
}

// Asked for before the line to the server stands and waits. A token ages: it comes late.
void ProfileMailStore::need_password(MailUse use)
{
    const MailProfile &profile = profile_for(use);
    const MailServer *server = server_for(profile, use);
    if (server != nullptr && server->sign_in == SignInKind::Password)
        accounts_.credentials(profile, use);
}

void ProfileMailStore::close()
{
    messages_.unbind();
    inbox_.reset();
    profiles_.clear();
}

const MailProfile &ProfileMailStore::profile_for(MailUse use)
{
    const auto found = profiles_.find(use);
    if (found != profiles_.end())
        return found->second;
    return profiles_.emplace(use, accounts_.profile_for(session_.UserName(), use)).first->second;
}

Inbox &ProfileMailStore::inbox()
{
    if (inbox_ == nullptr) {
        const MailProfile &profile = profile_for(MailUse::Reading);
        inbox_ = open_inbox_(
            profile, [this, profile] { return accounts_.credentials(profile, MailUse::Reading); });
    }
    return *inbox_;
}

void ProfileMailStore::fetch_inbox()
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

SendingAccount ProfileMailStore::sending_account()
{
    const MailProfile &profile = profile_for(MailUse::Sending);
    return {profile, [this, profile] { return accounts_.credentials(profile, MailUse::Sending); },
            [this, profile] { accounts_.accepted(profile, MailUse::Sending); },
            [this, profile](const QString &refusal) {
                return accounts_.ask_again(profile, MailUse::Sending, refusal);
            }};
}

void ProfileMailStore::Session::SignOn()
{
    handle_ = 0;
    store_.close();
    store_.run([this] { store_.open(download_mail_ ? MailUse::Reading : MailUse::Sending); });
    handle_ = ++last_handle_;
}

void ProfileMailStore::Session::SignOff()
{
    store_.run([this] { store_.close(); });
    handle_ = 0;
    download_mail_ = true;
}

void ProfileMailStore::Messages::set_SessionID(int handle)
{
    if (handle == 0 || handle != store_.session_.SessionID())
        fail(QStringLiteral("No mail session is open with the handle %1.").arg(handle));
    unbind();
    is_bound_ = true;
}

void ProfileMailStore::Messages::Fetch()
{
    const Inbox &inbox = bound_inbox();
    current_.reset();
    count_ = 0;
    store_.run([this] { store_.fetch_inbox(); });
    count_ = inbox.count();
}

void ProfileMailStore::Messages::set_MsgIndex(int index)
{
    constexpr int compose_buffer = -1;
    draft_.reset();
    if (index == compose_buffer) {
        current_.reset();
        draft_.emplace();
        return;
    }
    if (index < 0 || index >= count_)
        throw RuntimeError(error_number::subscript_out_of_range,
                           QStringLiteral("There is no message number %1: %2 were fetched.")
                               .arg(index)
                               .arg(count_));
    store_.run([this, index] { current_ = bound_inbox().read(index); });
}

void ProfileMailStore::Messages::require_binding() const
{
    if (!is_bound_)
        fail(QStringLiteral("The message set is not bound to an open mail session."));
}

Inbox &ProfileMailStore::Messages::bound_inbox()
{
    require_binding();
    return store_.inbox();
}

const MessageFields &ProfileMailStore::Messages::current() const
{
    if (!current_)
        fail(QStringLiteral("No message is current in the message set."));
    return *current_;
}

void ProfileMailStore::Messages::unbind()
{
    is_bound_ = false;
    count_ = 0;
    current_.reset();
}

ComposeBuffer &ProfileMailStore::Messages::draft()
{
    if (!draft_)
        fail(QStringLiteral("No new message is current in the message set."));
    return *draft_;
}

void ProfileMailStore::Messages::set_RecipIndex(int index)
{
    draft().set_RecipIndex(index);
}

void ProfileMailStore::Messages::set_RecipType(int type)
{
    draft().set_RecipType(type);
}

void ProfileMailStore::Messages::set_RecipAddress(const QString &address)
{
    draft().set_RecipAddress(address);
}

void ProfileMailStore::Messages::ResolveName()
{
    draft().ResolveName();
}

void ProfileMailStore::Messages::set_MsgSubject(const QString &subject)
{
    draft().set_MsgSubject(subject);
}

void ProfileMailStore::Messages::set_MsgNoteText(const QString &text)
{
    draft().set_MsgNoteText(text);
}

void ProfileMailStore::Messages::set_AttachmentPathName(const QString &path)
{
    draft().set_AttachmentPathName(path);
}

void ProfileMailStore::Messages::Send(bool show_dialog)
{
    require_binding();
    const ComposeBuffer message = draft();
    draft_.reset(); // whatever comes of it: nothing goes out twice
    NoSendDialog nobody;
    SendDialog *asked = store_.send_dialog_ != nullptr ? store_.send_dialog_ : &nobody;
    store_.run([&] {
        store_.need_password(MailUse::Sending);
        send_message(message, store_.sending_account(), store_.sending_,
                     show_dialog ? asked : nullptr);
    });
}
