#pragma once

#include <QString>
#include <QStringList>

/// What the extraction finds in the text of a returned-mail notice.
struct FailedAddresses
{
    /// The words that hold "@", in order: joined by blanks, and one a line.
    QString words;
    QString lines;
    /// The lines joined by commas, with a comma before the first; empty with exactly one "@" in
    /// all.
    QString comma_list;
    /// The last piece between commas.
    QString last_element;
    /// What goes to the log, in order. With exactly one "@" the one word; with more, every piece
    /// between commas and then every line once more.
    QStringList entries;
};

/// Pulls the failed addresses out of a notice's text: brackets of four kinds, ";", ":", "/", "\"
/// and line breaks part words like a blank does; every other character stays part of its word.
FailedAddresses failed_addresses(const QString &notice);
