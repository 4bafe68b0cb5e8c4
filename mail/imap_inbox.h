#pragma once

#include "mail/imap_window.h"
#include "mail/inbox.h"

#include <functional>
#include <memory>

/// A mailbox of an IMAP server, in the order of arrival. It is opened by EXAMINE and read by
/// BODY.PEEK: no flag changes. Left out are messages flagged as deleted. Attachments stay where
/// they are. Of the list 24 bytes a message are kept in memory.
///
/// A line that the server drops is opened again and the reading goes on, as long as each new line
/// brings messages. Failures are RuntimeError 32000 with the server, the step and the server's
/// words; after one the inbox fails in the same way until the next fetch.
class ImapInbox : public Inbox
{
public:
    /// @param server       its port 0 is 993, or 143 where the line is not encrypted from the start
    /// @param mailbox      its name, "INBOX" when empty; "/" may stand for the server's own
    /// delimiter
    /// @param credentials  is asked before each signing on
    ImapInbox(const MailServer &server, const QString &mailbox,
              std::function<Credentials()> credentials, const NetworkConditions &conditions);
    /// Signs off without failing.
    ~ImapInbox() override;

    void fetch() override;
    int count() const override { return static_cast<int>(entries_.size()); }
    MessageFields read(int index) override;

    /// Bytes received so far, for measurements.
    qint64 received() const;

private:
    void open();
    void list();
    void open_and_list();
    void give_up(const RuntimeError &error);
    void sign_off();
    void resume();
    RawMessage read_raw(std::size_t index);

    MailServer server_;
    QString mailbox_;
    std::function<Credentials()> credentials_;
    NetworkConditions conditions_;
    std::unique_ptr<ImapSession> session_;
    std::unique_ptr<ImapWindow> window_;
    std::vector<ImapEntry> entries_;
    ImapMailbox opened_;
    bool may_resume_ = true;
    std::optional<RuntimeError> failure_;
    qint64 received_before_ = 0; // on earlier lines
};
