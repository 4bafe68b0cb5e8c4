#pragma once

#include "mail/imap_outline.h"
#include "mail/imap_session.h"
#include "mail/inbox.h"
#include "mail/message_reader.h"

#include <QHash>

#include <list>
#include <vector>

/// A message in the list of an IMAP mailbox.
struct ImapEntry
{
    quint32 uid = 0;
    qint64 size = 0;
    QDateTime arrived;
};

/// Reads messages ahead of who reads them, a batch at a time, so that the line is never idle: a
/// small message is fetched whole, of a larger one first its structure and a few header fields,
/// then the parts that a row needs. Asks for at most eight batches of 250 messages and 4 MiB; a
/// single larger text stands alone.
class ImapWindow
{
public:
    /// @param session, entries  outlive the window
    /// @param most_held  of all that has come and was not read yet; a server that sends more fails.
    ImapWindow(ImapSession &session, const std::vector<ImapEntry> &entries, qint64 most_held);

    /// The message at `index`; nothing when it has gone.
    /// @throws MessageRefused, and RuntimeError when the server cannot be understood.
    std::optional<RawMessage> read(std::size_t index);
    /// Whether no answers are on their way.
    bool is_idle() const { return pending_.isEmpty(); }

private:
    /// What is to be asked for next.
    enum class Want { Whole, Outline, Parts, Beginning, Nothing };

    struct Item
    {
        std::size_t index = 0;
        Want want = Want::Nothing;
        bool on_demand = false; // was read before, or refused with others: not asked for ahead
        bool is_asked = false;
        bool has_answer = false; // to what was asked last
        bool is_gone = false;
        QByteArray bytes; // the whole message, or its header
        std::optional<ImapValue> structure;
        std::optional<ImapOutline> outline;
        QHash<QByteArray, QByteArray> contents; // by section
        QString refusal;                        // of this message alone
        qint64 held = 0;                        // bytes that have come for it
    };

    struct Batch
    {
        std::vector<Item> items;
        int pending = 0; // commands
        QString refusal; // the server's words when it said NO to one of them
    };

    const ImapEntry &entry_of(const Item &item) const { return entries_[item.index]; }
    Item new_item(std::size_t index) const;
    void go_to(std::size_t index);
    void drop_first_batch();
    void begin_batch();
    void ask(Batch &batch, const Item *demanded = nullptr);
    static qint64 held_by(const Batch &batch);
    void advance();
    void take(ImapFetch fetch);
    void take(Item &item, ImapFetch fetch);
    static bool is_asked_for(const Item &item, const QByteArray &section);
    static qint64 limit_of(const Item &item);
    void settle(Batch &batch);
    static void settle(Item &item, const QString &refusal);
    static void settle_answer(Item &item);
    static QByteArray request_for(const Item &item);
    qint64 size_of_answer(const Item &item) const;
    RawMessage raw(Item item) const;

    ImapSession &session_;
    const std::vector<ImapEntry> &entries_;
    qint64 most_held_;
    std::list<Batch> batches_;           // in the order of their messages
    QHash<QByteArray, Batch *> pending_; // the commands on their way, by tag
    qint64 held_ = 0;                    // by all items
    std::size_t next_ = 0;               // the first message that is in no batch yet
};
