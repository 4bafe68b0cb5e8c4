#include "mail/profile_trial.h"

#include "mail/local_inbox.h"
#include "mail/local_sender.h"
#include "mail/sendmail_way_out.h"
#include "mail/smtp_session.h"
#include "platform/runtime_error.h"

namespace
{
[[noreturn]] void fail(const QString &what)
{
    throw RuntimeError(error_number::mail_failure, what);
}

void need_complete(const MailProfile &profile, MailUse use)
{
    if (const QString missing = missing_in(profile, use); !missing.isEmpty())
        fail(QStringLiteral("the profile is incomplete: %1.").arg(missing));
}

QString count_messages(const MailProfile &profile, const InboxOpener &open_inbox,
                       const std::function<Credentials()> &credentials)
{
    need_complete(profile, MailUse::Reading);
    if (profile.inbox == InboxKind::Local && local_inbox().isEmpty())
        fail(QStringLiteral("no local inbox was found. Looked for: %1")
                 .arg(local_inbox_places().join(QStringLiteral(", "))));
    const auto inbox = open_inbox(profile, credentials);
    inbox->fetch();
    const QString found = inbox->count() == 1
                              ? QStringLiteral("1 message in the inbox.")
                              : QStringLiteral("%L1 messages in the inbox.").arg(inbox->count());
    const QString caution = inbox->caution();
    return caution.isEmpty() ? found : found + u' ' + caution;
}

/// The step's sentence behind what it is about; `all_well` becomes false when it fails.
template <typename Step>
QString told(const QString &what, bool &all_well, Step step)
{
    try {
        return QStringLiteral("%1: %2").arg(what, step());
    } catch (const RuntimeError &error) {
        all_well = false;
        return QStringLiteral("%1 failed: %2").arg(what, error.description());
    }
}
} // namespace

WayOutTrial way_out_trial(NetworkConditions conditions)
{
    return [conditions = std::move(conditions)](const MailProfile &profile,
                                                const std::function<Credentials()> &credentials) {
        sender_of(profile);
        const MailServer *server = server_for(profile, MailUse::Sending);
        if (server == nullptr)
            return QStringLiteral("the program %1 takes it.")
                .arg(find_sendmail(profile.sendmail_program));
        SmtpSession session(*server, credentials, conditions);
        session.quit();
        return QStringLiteral("the mail server %1 takes it.").arg(server->host);
    };
}

TrialReport try_profile(const MailProfile &profile, const InboxOpener &open_inbox,
                        const WayOutTrial &try_way_out,
                        const std::function<Credentials(MailUse)> &credentials)
{
    TrialReport report{{}, true};
    report.text = told(QStringLiteral("Reading"), report.all_well, [&] {
        return count_messages(profile, open_inbox, [&] { return credentials(MailUse::Reading); });
    });
    report.text += u'\n';
    report.text += told(QStringLiteral("Sending"), report.all_well, [&] {
        need_complete(profile, MailUse::Sending);
        return try_way_out(profile, [&] { return credentials(MailUse::Sending); });
    });
    return report;
}
