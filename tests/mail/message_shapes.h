#pragma once

#include <QByteArray>
#include <QByteArrayList>

/// Messages of many shapes, for comparing the ways in which they can be read: small and large, with
/// attachments in front of the text and behind it, reports, wrapped and broken ones, and ones made
/// to stop their reader. All that have a subject have a Date; none holds a NUL, which IMAP cannot
/// carry.
QByteArrayList message_shapes();

/// A message of 2 MB whose structure an IMAP server tells in a line of more than 8 MiB.
QByteArray message_of_long_structure();

/// A plain message of this number.
QByteArray letter(int number);
