#pragma once

#include "platform/runtime_error.h"

#include <QString>

/// The message has gone from the inbox since it was fetched (another program moved or deleted it):
/// a run skips it.
class MessageGone : public RuntimeError
{
public:
    using RuntimeError::RuntimeError;
};

/// The mail store's session: a profile name before sign-on, a handle after it.
/// Every operation may throw RuntimeError with the store's own words.
class MailSession
{
public:
    virtual ~MailSession() = default;

    virtual void set_UserName(const QString &profile) = 0;
    virtual QString UserName() const = 0;
    /// Whether the sign-on may fetch new mail from a server.
    virtual void set_DownLoadMail(bool download) = 0;
    /// Opens the session; blocks until the store answers.
    virtual void SignOn() = 0;
    /// The open session's handle, never 0; 0 when none is open.
    virtual int SessionID() const = 0;
    virtual void SignOff() = 0;
};

/// The message set bound to a session: the fetched inbox, one of whose messages is current, and the
/// compose buffer.
class MessageSet
{
public:
    virtual ~MessageSet() = default;

    virtual void set_SessionID(int handle) = 0;
    /// Fills the set from the inbox, which stays as it is: no flag, no move, no lock left behind.
    virtual void Fetch() = 0;
    virtual int MsgCount() const = 0;
    /// 0 … MsgCount - 1 makes that message current and reads it; -1 selects the compose buffer.
    /// @throws MessageGone when the message is no longer there.
    virtual void set_MsgIndex(int index) = 0;

    /// The current message's fields, decoded; empty when the message lacks them.
    virtual QString MsgOrigAddress() const = 0;
    virtual QString MsgSubject() const = 0;
    virtual QString MsgDateReceived() const = 0;
    virtual QString MsgOrigDisplayName() const = 0;
    virtual QString MsgNoteText() const = 0;

    /// The recipient with this running number becomes current; a new number adds one.
    virtual void set_RecipIndex(int index) = 0;
    /// 1: To, 3: blind copy.
    virtual void set_RecipType(int type) = 0;
    virtual void set_RecipAddress(const QString &address) = 0;
    virtual void ResolveName() = 0;
    virtual void set_MsgSubject(const QString &subject) = 0;
    virtual void set_MsgNoteText(const QString &text) = 0;
    virtual void set_AttachmentPathName(const QString &path) = 0;
    virtual void Send(bool show_dialog) = 0;
    virtual void Copy() = 0;
};

/// The mail store behind its two objects.
class MailStore
{
public:
    virtual ~MailStore() = default;

    virtual MailSession &session() = 0;
    virtual MessageSet &messages() = 0;

    /// Whether an operation is going on that waits, for a server or for a person, while the windows
    /// paint. No other operation may begin then.
    virtual bool is_busy() const { return false; }
};
