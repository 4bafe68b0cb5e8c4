#pragma once

#include "mail/imap_fetch.h"
#include "mail/imap_outline.h"
#include "mail/message_reader.h"

#include <QByteArrayList>
#include <QHash>

#include <optional>

/// A message in the list of an IMAP mailbox.
struct ImapEntry
{
    quint32 uid = 0;
    qint64 size = 0;
    QDateTime arrived;
};

/// A message that is fetched from an IMAP server: what is to be asked for next, and what has come.
/// A small one is fetched whole; of a larger one first its structure and a few header fields, then
/// the parts that a row needs. What cannot be read in that way, because its structure makes no
/// sense, is beyond all measure or is not told, is read from the beginning of the message, 1 MiB of
/// it.
class ImapItem
{
public:
    explicit ImapItem(const ImapEntry &entry);

    bool wants_more() const { return want_ != Want::Nothing; }
    /// What is to be asked for, for one command each.
    QByteArrayList requests() const;
    /// How many bytes the answer has, about.
    qint64 size_of_answer() const;
    /// Whether it is asked for only when somebody reads it, and alone.
    bool is_on_demand() const { return is_on_demand_; }
    void leave_to_demand() { is_on_demand_ = true; }

    /// Its requests go out.
    void begin_asking();
    bool is_asked() const { return is_asked_; }
    /// Takes an answer. @return how many bytes of it were not asked for, or had come before.
    qint64 take(ImapFetch fetch);
    /// All answers have come. @param refusal  the server's words when it refused some request.
    void settle(const QString &refusal);
    /// How many bytes it takes in memory.
    qint64 held() const;

    /// Once it wants no more: whether it has gone, else why the server does not give it, else the
    /// message.
    bool is_gone() const { return is_gone_; }
    const QString &refusal() const { return refusal_; }
    RawMessage take_message();

private:
    enum class Want { Whole, Outline, Parts, Beginning, LongBeginning, Nothing };

    bool is_asked_for(const QByteArray &section) const;
    qint64 limit() const;
    bool needs(const QByteArray &section) const;
    void take_section(const QByteArray &section, QByteArray bytes);
    void settle_refusal(const QString &refusal);
    void settle_answer();
    void settle_outline();
    void settle_beginning();
    void want_beginning();
    bool has_all_parts() const;
    qint64 left_out_of_parts() const;

    ImapEntry entry_;
    Want want_ = Want::Nothing;
    bool is_on_demand_ = false;
    bool is_asked_ = false;
    bool has_answer_ = false;    // to what was asked last
    bool is_unreadable_ = false; // that answer
    bool has_header_ = false;
    bool is_gone_ = false;
    QByteArray bytes_; // the whole message, or its header
    std::optional<ImapValue> structure_;
    qint64 structure_held_ = 0;
    std::optional<ImapOutline> outline_;
    QHash<QByteArray, QByteArray> contents_; // by section
    qint64 contents_held_ = 0;
    bool is_cut_ = false; // there is more than what was asked for
    QString refusal_;     // of this message alone
};
