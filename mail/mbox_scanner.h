#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

class MailFile;

/// Where a message stands in an mbox file.
struct MboxMessage
{
    qint64 begin = 0; ///< its separator line ("From … 10:20:30 2006")
    qint64 end = 0;   ///< behind its last byte, the empty line in front of the next one left out
    std::size_t mark = 0; ///< a hash of the separator line, to know the message again
    bool deleted = false; ///< marked so by a mail program that has not rewritten the file yet
};

/// Finds the messages of an mbox file, reading it in chunks up to `size`.
///
/// A separator is a line at the file's start or behind an empty line that begins with "From " and
/// holds an hh:mm and a four-digit year: prose that begins with "From " is none. Files of the mboxo
/// and mboxrd kinds are read so, with LF or CR LF; a Content-Length (mboxcl, mboxcl2) is not
/// believed, because programs that move or edit messages leave it wrong.
///
/// Nothing when the file holds something else in front of its first separator.
std::optional<std::vector<MboxMessage>> scan_mbox(const MailFile &file, qint64 size);

/// Takes the quoting of mboxrd away, in place: a line of ">"s and then "From " loses one ">".
void unquote_from_lines(QByteArray &message);
