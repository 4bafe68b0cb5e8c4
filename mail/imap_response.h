#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>
#include <utility>
#include <vector>

class ServerConnection;

/// One response of an IMAP server (RFC 3501 section 7): its lines, and the literals between them.
struct ImapResponse
{
    /// "*" untagged, "+" a request to go on, else the tag of the command that it ends.
    QByteArray tag;
    /// What stands behind the tag; a literal lies between each two pieces, whose announcement is
    /// cut.
    QList<QByteArray> pieces;
    QList<QByteArray> literals;
    /// Whether it went on behind the 10,000th literal; what did was passed over.
    bool is_cut = false;

    bool is_untagged() const { return tag == "*"; }
    bool is_continuation() const { return tag == "+"; }
    /// The first word in capital letters: "OK", "CAPABILITY"; of "12 EXISTS" it is "EXISTS".
    QByteArray keyword() const;
    /// The number in front of the keyword; nothing when there is none.
    std::optional<quint32> number() const;
    /// What follows the keyword in the first piece.
    QByteArray rest() const;
};

/// Reads the next response. Literals may stand anywhere but in status responses, whose text may
/// look like one.
/// @throws RuntimeError 32000 through the connection when it is beyond all measure: a line of 8
/// MiB, a literal or a response of 96 MiB.
ImapResponse read_imap_response(ServerConnection &connection);

/// What stands in a FETCH response: nothing (NIL), a text or a list.
struct ImapValue
{
    enum class Kind { Nil, Text, List };

    Kind kind = Kind::Nil;
    QByteArray text;
    std::vector<ImapValue> items;

    bool is_list() const { return kind == Kind::List; }
    /// The item's text; empty when there is no such item or it is none.
    QByteArray text_at(std::size_t index) const;
};

/// The data of one message in a FETCH response; what it does not tell is empty.
struct ImapFetch
{
    quint32 uid = 0;
    qint64 size = -1;
    QDateTime arrived;
    bool is_deleted = false;
    std::optional<ImapValue> structure;
    qint64 structure_size = 0; // what it takes in memory
    /// Whether the response made no sense from some place on, so that more may have been said.
    bool is_cut = false;
    /// BODY sections by what stands in the brackets, in capital letters: "", "1.MIME"; a section
    /// that the message does not have (NIL) is left out.
    std::vector<std::pair<QByteArray, QByteArray>> sections;
};

/// Reads a FETCH response as far as it can be read, up to where it makes no sense. Items of no
/// interest are passed over. Lists below the 100th level, and those in which the 100,000th value is
/// passed, count as nothing (NIL).
ImapFetch read_fetch(ImapResponse response);

/// Reads an INTERNALDATE, "17-Jul-1996 02:44:25 -0700"; an invalid date-time when it cannot be
/// read.
QDateTime read_internal_date(const QByteArray &text);

/// A mailbox's name as it stands in commands: modified UTF-7 (RFC 3501 5.1.3), quoted.
QByteArray imap_mailbox_name(const QString &name);

/// A text as a quoted string; it must hold no line end, NUL or byte above 127.
QByteArray imap_quoted(const QByteArray &text);

/// Numbers in ascending order as a sequence set: "1:3,7".
QByteArray imap_set(const std::vector<quint32> &numbers);
