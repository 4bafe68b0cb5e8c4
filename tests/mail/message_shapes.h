#pragma once

#include <QByteArray>
#include <QByteArrayList>

/// Messages of many shapes, for comparing the ways in which they can be read: small and large, with
/// attachments in front of the text and behind it, reports, wrapped and broken ones. All that have
/// a subject have a Date; none holds a NUL, which IMAP cannot carry.
QByteArrayList message_shapes();

/// A plain message of this number.
QByteArray letter(int number);
