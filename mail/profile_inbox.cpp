#include "mail/profile_inbox.h"

#include "mail/local_inbox.h"
#include "platform/runtime_error.h"

InboxOpener inbox_opener(NetworkConditions conditions)
{
    return [conditions = std::move(conditions)](
               const MailProfile &profile,
               const std::function<Credentials()> &) -> std::unique_ptr<Inbox> {
        switch (profile.inbox) {
        case InboxKind::Local:
            return open_inbox(local_inbox());
        case InboxKind::Maildir:
        case InboxKind::Mbox:
            return open_inbox(profile.inbox_path);
        case InboxKind::Imap:
        case InboxKind::Pop3:
            break;
        }
        throw RuntimeError(error_number::mail_failure,
                           QStringLiteral("Reading from a mail server is not built yet"));
    };
}
