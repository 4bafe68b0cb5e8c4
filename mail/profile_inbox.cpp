#include "mail/profile_inbox.h"

#include "mail/imap_inbox.h"
#include "mail/local_inbox.h"
#include "mail/pop3_inbox.h"
#include "platform/runtime_error.h"

InboxOpener inbox_opener(NetworkConditions conditions)
{
    return [conditions = std::move(conditions)](
               const MailProfile &profile,
               const std::function<Credentials()> &credentials) -> std::unique_ptr<Inbox> {
        switch (profile.inbox) {
        case InboxKind::Local:
            return open_inbox(local_inbox());
        case InboxKind::Maildir:
        case InboxKind::Mbox:
            return open_inbox(profile.inbox_path);
        case InboxKind::Imap:
            return std::make_unique<ImapInbox>(profile.inbox_server, profile.inbox_path,
                                               credentials, conditions);
        case InboxKind::Pop3:
            return std::make_unique<Pop3Inbox>(profile.inbox_server, credentials, conditions);
        }
        throw RuntimeError(error_number::internal_error, QStringLiteral("No such kind of inbox"));
    };
}
