#pragma once

#include "platform/text_box.h"

#include <QStringList>

/// Adds one entry to the log box: CR LF, then the text.
inline void append_entry(TextBox &Text27, const QString &entry)
{
    Text27.append_text(QStringLiteral("\r\n") + entry);
}

inline void append_entries(TextBox &Text27, const QStringList &entries)
{
    if (!entries.isEmpty())
        append_entry(Text27, entries.join(QStringLiteral("\r\n")));
}
