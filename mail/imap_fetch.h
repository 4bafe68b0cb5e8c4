#pragma once

#include "mail/imap_response.h"

#include <QByteArray>
#include <QDateTime>

#include <optional>
#include <utility>
#include <vector>

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
    qint64 structure_size = 0; // what it takes in memory; one of more than 16 MiB is nothing (NIL)
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
