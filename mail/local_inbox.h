#pragma once

#include "mail/inbox.h"

#include <QString>
#include <QStringList>

#include <memory>

/// What a path holds, as far as reading mail goes.
enum class LocalInboxKind { None, Maildir, Mbox };

/// A folder with cur/ or new/ is a Maildir, a regular file an mbox. Here and in open_inbox() a path
/// may be in drive notation (native_path()); on a drive other than C there is nothing.
LocalInboxKind local_inbox_kind(const QString &path);

/// Where a user's local inbox may be, in the order of preference: $MAIL, ~/Maildir,
/// /var/mail/$USER.
QStringList local_inbox_places();

/// The first of local_inbox_places() that holds an inbox; empty when none does.
QString local_inbox();

/// @throws RuntimeError 32000 when the path holds no inbox.
std::unique_ptr<Inbox> open_inbox(const QString &path);
