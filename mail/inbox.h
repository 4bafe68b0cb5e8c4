#pragma once

#include "mail/mail_store.h"
#include "mail/message_fields.h"

/// The mailbox answers, but not with this message; the next one may come.
class MessageRefused : public RuntimeError
{
public:
    using RuntimeError::RuntimeError;
};

/// A mailbox that is read and never changed: no flag, no move, no lock left behind.
class Inbox
{
public:
    virtual ~Inbox() = default;

    /// Finds the messages; the ones found before are forgotten.
    /// @throws RuntimeError when the mailbox cannot be read.
    virtual void fetch() = 0;

    /// How many messages the last fetch found. The number stays the same until the next fetch.
    virtual int count() const = 0;

    /// What a person should know before messages are read from it, as found by the last fetch, in
    /// whole sentences; empty for nothing.
    virtual QString caution() const { return {}; }

    /// Reads message `index`, 0 … count() - 1, from the mailbox.
    /// @throws MessageGone when it is no longer there, RuntimeError when it cannot be read;
    /// MessageRefused when only this one cannot.
    virtual MessageFields read(int index) = 0;
};
