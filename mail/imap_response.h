#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
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
    /// Whether there was more of it than is kept: it ends where that begins.
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
/// look like one. An untagged one of more than 8 MiB in a line, 96 MiB in all or 10,000 literals is
/// cut there: whoever writes a message can make its structure of any length.
/// @throws RuntimeError 32000 through the connection when it is beyond all measure: a literal of 96
/// MiB, another line of 8 MiB, 1 GiB that is passed over.
ImapResponse read_imap_response(ServerConnection &connection);

/// A mailbox's name as it stands in commands: modified UTF-7 (RFC 3501 5.1.3), quoted.
QByteArray imap_mailbox_name(const QString &name);

/// A text as a quoted string; it must hold no line end, NUL or byte above 127.
QByteArray imap_quoted(const QByteArray &text);

/// Numbers in ascending order as a sequence set: "1:3,7".
QByteArray imap_set(const std::vector<quint32> &numbers);
