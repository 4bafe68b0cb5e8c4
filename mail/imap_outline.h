#pragma once

#include "mail/imap_fetch.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QByteArrayView>

#include <functional>
#include <optional>
#include <vector>

/// A message as its IMAP BODYSTRUCTURE (RFC 3501 7.4.2) and its header tell it: enough to say which
/// sections hold what a row needs, and to put the message together from them alone. Which part is
/// the text is decided by read_mime_parts(), as for a whole message: it reads a trial message in
/// which each part holds its own number.
class ImapOutline
{
public:
    /// @param header  the header fields that a row needs, and those that describe the content
    /// @return nothing when the structure cannot be used, or has more than the 1,000 parts that are
    /// looked at in a message.
    static std::optional<ImapOutline> read(const ImapValue &structure, const QByteArray &header);

    /// The sections to fetch: of every part that is needed its header ("1.2.MIME", but for the only
    /// part of a message, whose header is known) and its content ("1.2").
    const QByteArrayList &sections() const { return sections_; }
    /// How many bytes a content has, as the structure tells; 0 for a header.
    qint64 size_of(const QByteArray &section) const;
    /// How many bytes it takes in memory, about.
    qint64 held() const { return parts_ * bytes_of_part + header_.size(); }

    using Content = std::function<QByteArray(const QByteArray &section)>;
    /// The message with what `content` gives for the sections; all other parts are empty.
    QByteArray message(const Content &content) const;

private:
    enum class Kind { Leaf, Multipart, Message };

    struct Part
    {
        Kind kind = Kind::Leaf;
        QByteArray section; // "1.2"; that of its parts without their numbers, for a multipart
        QByteArray type = "application/octet-stream";
        bool is_delivery_report = false;
        bool is_attachment = false;
        qint64 size = 0;
        std::vector<Part> parts;
    };
    using Leaf = std::function<QByteArray(const Part &part)>;

    static constexpr qint64 bytes_of_part = 256; // with its texts and its sections

    std::optional<Part> read_part(const ImapValue &structure, const QByteArray &section);
    std::optional<Part> read_multipart(const ImapValue &structure, const QByteArray &section);
    std::optional<Part> read_message(const ImapValue &structure, const QByteArray &section);
    static qint64 size_of_leaves(const Part &part);
    static Part read_leaf(const ImapValue &structure, const QByteArray &section);
    static const Part *find(const Part &part, QByteArrayView section);
    static QByteArray short_header(const Part &part);
    bool is_single() const { return root_.kind == Kind::Leaf; }
    void choose_sections();
    QByteArray trial() const;
    void write(const Part &part, const Leaf &leaf, QByteArray &message) const;

    Part root_;
    int parts_ = 0;
    QByteArray header_; // the fields, each with its line end
    QByteArray boundary_;
    QByteArrayList sections_;
};
