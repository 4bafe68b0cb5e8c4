#include "tests/support/mail_store_double.h"

void MailStoreDouble::called(const QString &operation, const QString &argument) const
{
    // Reading is const in the interface; what was read is written down all the same.
    auto &self = const_cast<MailStoreDouble &>(*this);
    self.calls.append(operation + (argument.isNull() ? QString() : "(" + argument + ")"));
    if (on_any_call)
        on_any_call(calls.last());
    if (const auto action = on_call.value(operation))
        action();
}

const InboxMessage &MailStoreDouble::current(const char *operation) const
{
    called(QString::fromLatin1(operation));
    return inbox.at(index_);
}

void MailStoreDouble::fail_at(const QString &operation)
{
    on_call.insert(operation,
                   [] { throw RuntimeError(error_number::mail_failure, "The store says no"); });
}

namespace
{
/// An argument as written down; an empty one shows as "()".
QString shown(const QString &argument)
{
    return argument.isNull() ? QStringLiteral("") : argument;
}
} // namespace

void MailStoreDouble::set_UserName(const QString &profile)
{
    called(QStringLiteral("set_UserName"), shown(profile));
    user_name_ = profile;
}

QString MailStoreDouble::UserName() const
{
    called(QStringLiteral("UserName"));
    return user_name_;
}

void MailStoreDouble::set_DownLoadMail(bool download)
{
    called(QStringLiteral("set_DownLoadMail"), download ? "true" : "false");
}

void MailStoreDouble::SignOn()
{
    called(QStringLiteral("SignOn"));
}

int MailStoreDouble::SessionID() const
{
    called(QStringLiteral("SessionID"));
    return session_id;
}

void MailStoreDouble::SignOff()
{
    called(QStringLiteral("SignOff"));
}

void MailStoreDouble::set_SessionID(int handle)
{
    called(QStringLiteral("set_SessionID"), QString::number(handle));
}

void MailStoreDouble::Fetch()
{
    called(QStringLiteral("Fetch"));
}

int MailStoreDouble::MsgCount() const
{
    called(QStringLiteral("MsgCount"));
    return static_cast<int>(inbox.size());
}

void MailStoreDouble::set_MsgIndex(int index)
{
    called(QStringLiteral("set_MsgIndex"), QString::number(index));
    if (gone.contains(index))
        throw MessageGone(error_number::mail_failure, "The message has gone");
    index_ = index;
}

QString MailStoreDouble::MsgOrigAddress() const
{
    return current("MsgOrigAddress").address;
}

QString MailStoreDouble::MsgSubject() const
{
    return current("MsgSubject").subject;
}

QString MailStoreDouble::MsgDateReceived() const
{
    return current("MsgDateReceived").date;
}

QString MailStoreDouble::MsgOrigDisplayName() const
{
    return current("MsgOrigDisplayName").name;
}

QString MailStoreDouble::MsgNoteText() const
{
    return current("MsgNoteText").text;
}

void MailStoreDouble::set_RecipIndex(int index)
{
    called(QStringLiteral("set_RecipIndex"), QString::number(index));
}

void MailStoreDouble::set_RecipType(int type)
{
    called(QStringLiteral("set_RecipType"), QString::number(type));
}

void MailStoreDouble::set_RecipAddress(const QString &address)
{
    called(QStringLiteral("set_RecipAddress"), shown(address));
}

void MailStoreDouble::ResolveName()
{
    called(QStringLiteral("ResolveName"));
}

void MailStoreDouble::set_MsgSubject(const QString &subject)
{
    called(QStringLiteral("set_MsgSubject"), shown(subject));
}

void MailStoreDouble::set_MsgNoteText(const QString &text)
{
    called(QStringLiteral("set_MsgNoteText"), shown(text));
}

void MailStoreDouble::set_AttachmentPathName(const QString &path)
{
    called(QStringLiteral("set_AttachmentPathName"), shown(path));
}

void MailStoreDouble::Send(bool show_dialog)
{
    called(QStringLiteral("Send"), show_dialog ? "true" : "false");
}

void MailStoreDouble::Copy()
{
    called(QStringLiteral("Copy"));
}
