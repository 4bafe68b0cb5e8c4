#pragma once

#include "mail/inbox.h"

#include <QByteArray>

#include <vector>

class MailFile;

/// A Maildir folder: the files of new/ and cur/, in the order of their arrival. Left out are tmp/,
/// names that begin with a dot, what is no regular file, and messages flagged as trashed. Nothing
/// in the folder changes, not even an access time. Only the names are kept in memory.
class MaildirInbox : public Inbox
{
public:
    explicit MaildirInbox(const QString &folder);

    /// @throws RuntimeError 53, 70 or 57 when new/ and cur/ cannot be listed.
    void fetch() override;
    int count() const override { return static_cast<int>(entries_.size()); }
    /// A file that another program has renamed since (a flag changed) is found again.
    MessageFields read(int index) override;

private:
    struct Entry
    {
        qint64 arrived = 0; // seconds, as the name tells
        bool is_new = false;
        QByteArray name; // empty once the message has gone
    };

    void list(bool is_new, std::vector<Entry> &entries) const;
    QByteArray path_of(const Entry &entry) const;
    void follow_renames();
    MailFile open_message(std::size_t index);

    QByteArray folder_;
    std::vector<Entry> entries_;
};
