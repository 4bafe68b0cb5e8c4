#pragma once

#include "mail/mail_store.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// A message of the double's inbox.
struct InboxMessage
{
    QString address;
    QString subject;
    QString date;
    QString name;
    QString text;
};

/// A mail store that holds the messages a test gives it and writes down every call, as
/// "SignOn", "set_UserName(office)".
class MailStoreDouble : public MailStore, private MailSession, private MessageSet
{
public:
    QList<InboxMessage> inbox;
    QStringList calls;
    /// Runs at the start of the operation with this name, for instance to throw.
    QHash<QString, std::function<void()>> on_call;
    int session_id = 7;
    /// Runs at the start of every operation, with the words that it is written down with.
    std::function<void(const QString &words)> on_any_call;
    /// Indexes of messages that have vanished since the fetch.
    QList<int> gone;

    /// Makes the operation with this name fail.
    void fail_at(const QString &operation);

    /// What it says of itself: an operation waits.
    bool busy = false;

    bool is_busy() const override { return busy; }
    MailSession &session() override { return *this; }
    MessageSet &messages() override { return *this; }

private:
    void called(const QString &operation, const QString &argument = {}) const;
    const InboxMessage &current(const char *operation) const;

    void set_UserName(const QString &profile) override;
    QString UserName() const override;
    void set_DownLoadMail(bool download) override;
    void SignOn() override;
    int SessionID() const override;
    void SignOff() override;

    void set_SessionID(int handle) override;
    void Fetch() override;
    int MsgCount() const override;
    void set_MsgIndex(int index) override;
    QString MsgOrigAddress() const override;
    QString MsgSubject() const override;
    QString MsgDateReceived() const override;
    QString MsgOrigDisplayName() const override;
    QString MsgNoteText() const override;

    void set_RecipIndex(int index) override;
    void set_RecipType(int type) override;
    void set_RecipAddress(const QString &address) override;
    void ResolveName() override;
    void set_MsgSubject(const QString &subject) override;
    void set_MsgNoteText(const QString &text) override;
    void set_AttachmentPathName(const QString &path) override;
    void Send(bool show_dialog) override;
    void Copy() override;

    QString user_name_;
    int index_ = 0;
};
