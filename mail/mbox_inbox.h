#pragma once

#include "mail/inbox.h"
#include "mail/mail_file.h"
#include "mail/mbox_scanner.h"

#include <vector>

/// An mbox file. Only the messages' places are kept in memory. The file is open for reading only;
/// while it is scanned or read a shared lock is held, if that can be had at once, and no longer.
class MboxInbox : public Inbox
{
public:
    explicit MboxInbox(const QString &file);

    /// An empty file is an empty inbox.
    /// @throws RuntimeError 53, 70 or 57 when the file cannot be read, 32000 when it is no mbox or
    /// keeps changing.
    void fetch() override;
    int count() const override { return static_cast<int>(messages_.size()); }
    /// A file that another program has changed since is scanned again and the message looked up.
    MessageFields read(int index) override;

private:
    struct State
    {
        qint64 size = 0;
        qint64 changed = 0; // nanoseconds
        bool operator==(const State &) const = default;
    };

    State state() const;
    std::vector<MboxMessage> scan();
    void scan_again();
    MessageFields read_at(const MboxMessage &message) const;
    [[noreturn]] void fail(const QString &what) const;

    QByteArray path_;
    MailFile file_;
    State scanned_; // the file's state at the last scan
    std::vector<MboxMessage> messages_;
};
