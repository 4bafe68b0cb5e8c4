#pragma once

#include "mail/pop3_session.h"
#include "mail/server_inbox.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// The inbox of a POP3 server, in the server's order. Nothing is deleted. A message is read by TOP
/// with more lines than it has, which unlike RETR marks nothing as read on common servers; RETR is
/// used only where the server knows no TOP: it does not name it among what it can, or, when it
/// names nothing at all, refuses it for a message that it gives by RETR. Messages come whole,
/// attachments too, and are asked for many at a time where the server allows it. The date of one
/// without is that of its first Received field.
///
/// A message without a unique identifier (UIDL) cannot be found again over another line.
class Pop3Inbox final : public ServerInbox
{
public:
    /// @param server       its port 0 is 995, or 110 where the line is not encrypted from the start
    /// @param credentials  is asked before each signing on
    Pop3Inbox(const MailServer &server, std::function<Credentials()> credentials,
              const NetworkConditions &conditions);
    /// Signs off without failing.
    ~Pop3Inbox() final;

    int count() const override { return static_cast<int>(entries_.size()); }
    QString caution() const override;

private:
    struct Entry
    {
        quint32 number = 0; // in this session; 0 once the message has gone
        qint64 size = 0;
        QByteArray identifier; // in all sessions; empty when the server names none of its own
    };

    void open_session(const Credentials &credentials) override;
    void list() override { entries_ = listed(); }
    void forget() override { entries_.clear(); }
    void take_up() override;
    bool can_be_found_again(std::size_t index) const override;
    RawMessage read_raw(std::size_t index) override;
    qint64 close_session(bool waits) override;
    const ServerConnection *line() const override;

    std::vector<Entry> listed();
    void name_entries(std::vector<Entry> &entries);
    void ask_ahead(std::size_t index);
    bool asks_by_top() const;
    bool may_lack_top() const;
    std::optional<QString> ask_by_retr(std::size_t index);
    void pass_over_asked();
    qint64 most_to_pass_over(std::size_t index) const;
    [[noreturn]] void tell_refusal(std::size_t index, const QString &words);
    [[noreturn]] void tell_gone(std::size_t index) const;

    std::unique_ptr<Pop3Session> session_;
    std::vector<Entry> entries_;
    std::deque<std::size_t> asked_; // whose answers are on their way
    // Of a server that does not say what it can:
    bool lacks_top_ = false;
    bool top_was_taken_ = false;
};
