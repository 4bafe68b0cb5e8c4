#pragma once

#include "mail/imap_item.h"
#include "mail/imap_session.h"
#include "mail/inbox.h"

#include <QHash>

#include <list>
#include <map>
#include <vector>

/// Reads messages ahead of who reads them, a batch at a time, so that the line is never idle. Asks
/// for at most eight batches of 250 messages and 4 MiB, a single larger text stands alone, and
/// what has come is held up to a bound, beside the message that is read: what is beyond it is
/// fetched again when somebody reads it.
class ImapWindow
{
public:
    /// @param session, entries  outlive the window
    /// @param most_held  bytes; a server that sends as many that nobody asked for fails.
    ImapWindow(ImapSession &session, const std::vector<ImapEntry> &entries, qint64 most_held);

    /// The message at `index`; nothing when it has gone.
    /// @throws MessageRefused, and RuntimeError when the server cannot be understood.
    std::optional<RawMessage> read(std::size_t index);
    /// Whether no answers are on their way.
    bool is_idle() const { return pending_.isEmpty(); }

private:
    struct Batch
    {
        std::size_t first = 0; // the index of its first message
        std::vector<ImapItem> items;
        int pending = 0; // commands
        QString refusal; // the server's words when it refused one of them

        std::size_t end() const { return first + items.size(); }
    };
    using Requests = std::map<QByteArray, std::vector<quint32>>; // and whom they are for

    void go_to(std::size_t index);
    void drop_first_batch();
    void begin_batch();
    void ask(Batch &batch, const ImapItem *demanded = nullptr);
    Requests requests_of(Batch &batch, const ImapItem *demanded) const;
    static qint64 held_by(const Batch &batch);
    void advance();
    void take(ImapFetch fetch);
    void keep_within_bounds(ImapItem &item, std::size_t index);
    void settle(Batch &batch);

    ImapSession &session_;
    const std::vector<ImapEntry> &entries_;
    std::list<Batch> batches_;           // in the order of their messages
    QHash<QByteArray, Batch *> pending_; // the commands on their way, by tag
    qint64 most_held_;
    qint64 held_ = 0;      // by all items
    qint64 unasked_ = 0;   // bytes that nobody asked for
    std::size_t next_ = 0; // the first message that is in no batch yet
    std::size_t read_ = 0; // the message that is read
};
