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

void LocalMailStore::Session::set_DownLoadMail(bool) {}

void LocalMailStore::Session::SignOn()
{
    SignOff();
    store_.inbox_ = store_.find_inbox(user_name_);
    handle_ = ++last_handle_;
}

void LocalMailStore::Session::SignOff()
{
    store_.messages_.unbind();
    store_.inbox_.reset();
    handle_ = 0;
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
    if (index == compose_buffer)
        return;
    if (index < 0 || index >= count_)
        throw RuntimeError(error_number::subscript_out_of_range,
                           QStringLiteral("There is no message number %1: %2 were fetched.")
                               .arg(index)
                               .arg(count_));
    current_ = bound_inbox().read(index);
}

Inbox &LocalMailStore::Messages::bound_inbox() const
{
    if (!is_bound_)
        fail(QStringLiteral("The message set is not bound to an open mail session."));
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
