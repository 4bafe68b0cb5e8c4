#include "mail/local_mail_store.h"

#include "mail/local_inbox.h"

#include <QStringList>

namespace
{
[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::mail_failure, what);
}

QString missing_inbox(const QString &profile)
{
    if (!profile.isEmpty())
        return QStringLiteral("There is no mail profile named '%1'.").arg(profile);
    return QStringLiteral("No local inbox was found. Looked for: %1")
        .arg(local_inbox_places().join(QStringLiteral(", ")));
}
} // namespace

std::unique_ptr<Inbox> LocalMailStore::find_inbox(const QString &profile) const
{
    const QString path = profile.isEmpty() ? local_inbox() : QString();
    if (!path.isEmpty())
        return open_inbox(path);
    const QString reason = missing_inbox(profile);
    const auto chosen = dialog_ == nullptr ? std::nullopt : dialog_->choose_inbox(reason);
    if (!chosen)
        fail(reason);
    return open_inbox(*chosen);
}

// The empty profile's: the program of this machine, which asks for no password.
SendingAccount LocalMailStore::account()
{
    return {MailProfile(), [] { return Credentials(); }};
}

void LocalMailStore::Session::SignOn()
{
    const bool download_mail = download_mail_;
    SignOff();
    if (download_mail)
        store_.inbox_ = store_.find_inbox(user_name_);
    else if (!user_name_.isEmpty())
        fail(missing_inbox(user_name_));
    handle_ = ++last_handle_;
}

void LocalMailStore::Session::SignOff()
{
    store_.messages_.unbind();
    store_.inbox_.reset();
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
    Inbox &inbox = bound_inbox();
    current_.reset();
    count_ = 0;
    inbox.fetch();
    count_ = inbox.count();
}

void LocalMailStore::Messages::set_MsgIndex(int index)
{
    constexpr int compose_buffer = -1;
    current_.reset();
    draft_.reset();
    if (index == compose_buffer) {
        draft_.emplace();
        return;
    }
    if (index < 0 || index >= count_)
        throw RuntimeError(error_number::subscript_out_of_range,
                           QStringLiteral("There is no message number %1: %2 were fetched.")
                               .arg(index)
                               .arg(count_));
    current_ = bound_inbox().read(index);
}

void LocalMailStore::Messages::require_binding() const
{
    if (!is_bound_)
        fail(QStringLiteral("The message set is not bound to an open mail session."));
}

Inbox &LocalMailStore::Messages::bound_inbox()
{
    require_binding();
    if (store_.inbox_ == nullptr)
        store_.inbox_ = store_.find_inbox(store_.session_.UserName());
    return *store_.inbox_;
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

ComposeBuffer &LocalMailStore::Messages::draft()
{
    if (!draft_)
        fail(QStringLiteral("No new message is current in the message set."));
    return *draft_;
}

void LocalMailStore::Messages::set_RecipIndex(int index)
{
    draft().set_RecipIndex(index);
}

void LocalMailStore::Messages::set_RecipType(int type)
{
    draft().set_RecipType(type);
}

void LocalMailStore::Messages::set_RecipAddress(const QString &address)
{
    draft().set_RecipAddress(address);
}

void LocalMailStore::Messages::ResolveName()
{
    draft().ResolveName();
}

void LocalMailStore::Messages::set_MsgSubject(const QString &subject)
{
    draft().set_MsgSubject(subject);
}

void LocalMailStore::Messages::set_MsgNoteText(const QString &text)
{
    draft().set_MsgNoteText(text);
}

void LocalMailStore::Messages::set_AttachmentPathName(const QString &path)
{
    draft().set_AttachmentPathName(path);
}

void LocalMailStore::Messages::Send(bool show_dialog)
{
    require_binding();
    const ComposeBuffer message = draft();
    draft_.reset(); // whatever comes of it: nothing goes out twice
    NoSendDialog nobody;
    SendDialog *asked = store_.send_dialog_ != nullptr ? store_.send_dialog_ : &nobody;
    send_message(message, store_.account(), store_.sending_, show_dialog ? asked : nullptr);
}
