#pragma once

#include "mail/outgoing_message.h"

#include <QString>

#include <optional>
#include <vector>

/// A new message while it is put together, by the operations of MessageSet that it is named after.
class ComposeBuffer
{
public:
    /// The recipient with this running number becomes current; the next new number adds one.
    /// @throws RuntimeError 9 for a number beyond that.
    void set_RecipIndex(int index);
    /// 1: To, 3: blind copy. These three are about the current recipient.
    /// @throws RuntimeError 32000 when there is none, or for another type.
    void set_RecipType(int type);
    void set_RecipAddress(const QString &address);
    /// @throws RuntimeError 32000 as resolve_recipient() does.
    void ResolveName();

    void set_MsgSubject(const QString &subject) { subject_ = subject; }
    void set_MsgNoteText(const QString &text) { text_ = text; }
    /// An empty path: no attachment. The file is read when the message is sent.
    void set_AttachmentPathName(const QString &path) { attachment_path_ = path; }

    /// The message as it stands, from this sender: every recipient resolved, blank ones left out,
    /// the attachment read.
    /// @throws RuntimeError 32000 as resolve_recipient() and read_attachment() do, and when there
    /// is nobody to send it to.
    OutgoingMessage message(const Mailbox &sender) const;

private:
    struct Recipient
    {
        bool is_blind_copy = false;
        QString text;
    };
    Recipient &current();

    std::vector<Recipient> recipients_;
    std::size_t current_ = 0;
    QString subject_;
    QString text_;
    QString attachment_path_;
};
