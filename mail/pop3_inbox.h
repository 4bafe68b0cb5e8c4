#pragma once

#include "mail/inbox.h"
#include "mail/pop3_session.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

struct RawMessage;

/// The inbox of a POP3 server, in the server's order. Nothing is deleted. A message is read by TOP
/// with more lines than it has, which unlike RETR marks nothing as read on common servers; RETR is
/// used only where the server knows no TOP: it does not name it among what it can, or, when it
/// names nothing at all, refuses it for a message that it gives by RETR. Messages come whole,
/// attachments too. Many are asked for at a time where the server allows it.
///
/// Lost lines and failures are as in ImapInbox; a server that names no unique identifiers (UIDL)
/// cannot be resumed.
class Pop3Inbox : public Inbox
{
public:
    /// @param server       its port 0 is 995, or 110 where the line is not encrypted from the start
    /// @param credentials  is asked before each signing on
    Pop3Inbox(const MailServer &server, std::function<Credentials()> credentials,
              const NetworkConditions &conditions);
    /// Signs off without failing.
    ~Pop3Inbox() override;

    void fetch() override;
    int count() const override { return static_cast<int>(entries_.size()); }
    /// The date of a message without one is that of its first Received field.
    MessageFields read(int index) override;
    QString caution() const override;

    /// Bytes received so far, for measurements.
    qint64 received() const;

private:
    struct Entry
    {
        quint32 number = 0; // in this session; 0 once the message has gone
        qint64 size = 0;
        QByteArray identifier; // in all sessions; empty when the server names none of its own
    };

    void open();
    std::vector<Entry> list();
    void name_entries(std::vector<Entry> &entries);
    void open_and_list();
    void give_up(const RuntimeError &error);
    void sign_off();
    void resume();
    RawMessage read_raw(std::size_t index);
    RawMessage ask_and_read(std::size_t index);
    void ask_ahead(std::size_t index);
    bool asks_by_top() const;
    bool may_lack_top() const;
    std::optional<QString> ask_by_retr(std::size_t index);
    void pass_over_asked();
    qint64 most_to_pass_over(std::size_t index) const;
    [[noreturn]] void tell_refusal(std::size_t index, const QString &words);
    [[noreturn]] void tell_gone(std::size_t index) const;

    MailServer server_;
    std::function<Credentials()> credentials_;
    NetworkConditions conditions_;
    std::unique_ptr<Pop3Session> session_;
    std::vector<Entry> entries_;
    std::deque<std::size_t> asked_; // whose answers are on their way
    // Of a server that does not say what it can:
    bool lacks_top_ = false;
    bool top_was_taken_ = false;
    bool may_resume_ = true;
    std::optional<RuntimeError> failure_;
    qint64 received_before_ = 0; // on earlier lines
};
