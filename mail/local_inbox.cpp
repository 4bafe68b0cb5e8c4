#include "mail/local_inbox.h"

#include "mail/maildir_inbox.h"
#include "mail/mbox_inbox.h"
#include "platform/drive_path.h"

#include <QDir>
#include <QFileInfo>

namespace
{
// The file that a path means; empty for one on a drive that does not exist.
QString place_of(const QString &path)
{
    try {
        return native_path(path);
    } catch (const RuntimeError &) {
        return {};
    }
}
} // namespace

LocalInboxKind local_inbox_kind(const QString &path)
{
    const QString place = place_of(path);
    const QFileInfo info(place);
    if (place.isEmpty() || !info.exists())
        return LocalInboxKind::None;
    if (info.isFile())
        return LocalInboxKind::Mbox;
    const QDir folder(place);
    const bool is_maildir = QFileInfo(folder.filePath(QStringLiteral("cur"))).isDir() ||
                            QFileInfo(folder.filePath(QStringLiteral("new"))).isDir();
    return is_maildir ? LocalInboxKind::Maildir : LocalInboxKind::None;
}

QStringList local_inbox_places()
{
    QStringList places;
    if (const QString mail = qEnvironmentVariable("MAIL"); !mail.isEmpty())
        places += mail;
    places += QDir::home().filePath(QStringLiteral("Maildir"));
    const QString user = qEnvironmentVariable("USER");
    if (!user.isEmpty() && !user.contains(u'/'))
        places += QStringLiteral("/var/mail/") + user;
    return places;
}

QString local_inbox()
{
    for (const QString &place : local_inbox_places()) {
        if (local_inbox_kind(place) != LocalInboxKind::None)
            return place;
    }
    return {};
}

std::unique_ptr<Inbox> open_inbox(const QString &path)
{
    switch (local_inbox_kind(path)) {
    case LocalInboxKind::Maildir:
        return std::make_unique<MaildirInbox>(place_of(path));
    case LocalInboxKind::Mbox:
        return std::make_unique<MboxInbox>(place_of(path));
    case LocalInboxKind::None:
        break;
    }
    throw RuntimeError(
        error_number::mail_failure,
        QStringLiteral("There is neither a Maildir folder nor a mailbox file: '%1'").arg(path));
}
