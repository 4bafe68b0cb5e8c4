#pragma once

#include "mail/imap_window.h"
#include "mail/server_inbox.h"

#include <functional>
#include <memory>

/// A mailbox of an IMAP server, in the order of arrival. It is opened by EXAMINE and read by
/// BODY.PEEK: no flag changes. Left out are messages flagged as deleted. Attachments stay where
/// they are. Of the list 24 bytes a message are kept in memory.
class ImapInbox final : public ServerInbox
{
public:
    /// @param server       its port 0 is 993, or 143 where the line is not encrypted from the start
    /// @param mailbox      its name, "INBOX" when empty; "/" may stand for the server's own
    /// delimiter
    /// @param credentials  is asked before each signing on
    ImapInbox(const MailServer &server, const QString &mailbox,
              std::function<Credentials()> credentials, const NetworkConditions &conditions);
    /// Signs off without failing.
    ~ImapInbox() final;

    int count() const override { return static_cast<int>(entries_.size()); }

private:
    void open_session(const Credentials &credentials) override;
    void list() override;
    void forget() override { entries_.clear(); }
    void take_up() override;
    bool can_be_found_again(std::size_t) const override { return true; }
    RawMessage read_raw(std::size_t index) override;
    qint64 close_session(bool waits) override;
    const ServerConnection *line() const override;

    void open_window();

    QString mailbox_;
    std::unique_ptr<ImapSession> session_;
    std::unique_ptr<ImapWindow> window_;
    std::vector<ImapEntry> entries_;
    ImapMailbox opened_;
    quint32 validity_ = 0; // of the numbers in the entries
};
