#include "mail/retrieval_run.h"

#include "app/log_writer.h"
#include "app/please_wait.h"
#include "app/settings_store.h"
#include "app/shared_controls.h"
#include "app/tab_number.h"
#include "db/address_lists.h"
#include "db/data_connection.h"
#include "mail/log_replay.h"
#include "mail/mail_store.h"
#include "mail/returned_mail_purge.h"
#include "mail/subject_purge.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"
#include "platform/skipped_steps.h"
#include "platform/words.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QProgressBar>

#include <algorithm>

namespace
{
const QString yes = QStringLiteral("yes");
const QString get_isp = QStringLiteral("Get ISP");
const QString get_subject = QStringLiteral("Get Subject");
const QStringList returned_mail_keys = {QStringLiteral("Filter"), QStringLiteral("Filter1"),
                                        QStringLiteral("Filter2")};

QString location_warning(const QString &opening)
{
    return opening + QStringLiteral(" the database location (including file extension) by clicking "
                                    "the set properties tab\n\n\n"
                                    "PLEASE NOTE THAT IF THE DATABASE LOCATION IS INCORRECT "
                                    "Velmoradrane will attempt to "
                                    "access the non valid file and will HANG \n"
                                    "YOU WILL HAVE TO RESTART THE PROGRAM TO CONTINUE");
}

QString gone_note(int gone)
{
    return gone == 0
               ? QString()
               : QStringLiteral("%1 of the messages had gone before they could be read").arg(gone);
}
} // namespace

void RetrievalRun::Command2_Click() const
{
    ask_for_purges();
    if (!database_is_agreed())
        return;
    desk_.show_tab(tab_number::new_email);
    if (!profile_is_agreed()) {
        desk_.show_tab(tab_number::first);
        return;
    }
    desk_.purges.please_wait.show();
    QCoreApplication::processEvents();
    sign_on();
    copy_messages(nullptr);
    purge_as_agreed();
    show_work_view_on_master();
    desk_.purges.please_wait.unload();
    show_whole_tables(nullptr);
}

void RetrievalRun::runSchedule_Click(SkippedSteps &skipped) const
{
    desk_.stop_timer();
    desk_.show_tab(tab_number::new_email);
    desk_.store.session().set_UserName(desk_.purges.settings.read(QStringLiteral("Profile")));
    QCoreApplication::processEvents();
    sign_on();
    copy_messages(&skipped);
    purge_ignoring_errors(skipped);
    skipped.attempt([this] { show_work_view_on_master(); });
    show_whole_tables(&skipped);
}

// An earlier "yes" stays when the answer is Cancel.
void RetrievalRun::ask_for_purges() const
{
    const QString all_in_log =
        QStringLiteral(" All deleted entries can be viewed in the log file.");
    if (desk_.purges.prompts.ok_cancel(
            QStringLiteral(
                "Do you want delete incorrect or invalid addresses as returned by your ISP?") +
            all_in_log))
        desk_.purges.settings.write(get_isp, yes);
    if (desk_.purges.prompts.ok_cancel(
            QStringLiteral("Do you want delete messages with a specific subject heading?") +
            all_in_log))
        desk_.purges.settings.write(get_subject, yes);
}

bool RetrievalRun::database_is_agreed() const
{
    if (desk_.purges.settings.read(QStringLiteral("WarningMessages")) == QLatin1String("1"))
        return true;
    Prompts &prompts = desk_.purges.prompts;
    if (desk_.purges.Data1.database_name() != desk_.purges.controls.Text25.text()) {
        prompts.notice(location_warning(QStringLiteral("Please provide")), NoticeIcon::None);
        return false;
    }
    prompts.notice(location_warning(QStringLiteral("You can provide")), NoticeIcon::Information);
    return prompts.ok_cancel(
        QStringLiteral("This will begin import of new messages into the database"));
}

bool RetrievalRun::profile_is_agreed() const
{
    MailSession &session = desk_.store.session();
    session.set_UserName(desk_.purges.settings.read(QStringLiteral("Profile")));
    const QString profile = session.UserName();
    return profile.isEmpty() ||
           desk_.purges.prompts.ok_cancel(
               QStringLiteral("Is it OK to log on using the Profile name:  ") + profile +
               QStringLiteral("   ? If you click CANCEL you can change this setting in the "
                              "properties section. "));
}

void RetrievalRun::sign_on() const
{
    desk_.store.session().SignOn();
    desk_.store.messages().set_SessionID(desk_.store.session().SessionID());
}

void RetrievalRun::copy_messages(SkippedSteps *skipped) const
{
    MessageSet &messages = desk_.store.messages();
    run_step(skipped, [&] { messages.Fetch(); });
    int count = 0;
    run_step(skipped, [&] { count = messages.MsgCount(); });
    int gone = 0;
    QProgressBar &bar = desk_.purges.controls.ProgressBar1;
    for (int i = 0; i < count; ++i) {
        gone += copy_message(i, skipped) ? 0 : 1;
        bar.setValue(std::min(i, bar.maximum()));
        desk_.purges.progress.tell(QStringLiteral("Message"), i + 1, count);
    }
    desk_.purges.progress.clear();
    desk_.purges.progress.note(gone_note(gone));
    if (skipped != nullptr && gone > 0)
        skipped->add(gone_note(gone));
    run_step(skipped, [&] { desk_.store.session().SignOff(); });
    run_step(skipped, [&] { desk_.purges.Data1.record_set().move_first(); });
    run_step(skipped, [&] { desk_.purges.lists.Command11_Click(); });
}

/// @return false when the message had gone and no row was added.
bool RetrievalRun::copy_message(int index, SkippedSteps *skipped) const
{
    DataConnection &Data1 = desk_.purges.Data1;
    try {
        desk_.store.messages().set_MsgIndex(index);
    } catch (const MessageGone &) {
        return false;
    } catch (const RuntimeError &error) {
        if (skipped == nullptr)
            throw;
        skipped->add(error.description());
    }
    run_step(skipped, [&] { Data1.record_set().add_new(); });
    copy_fields(skipped);
    run_step(skipped, [&] { Data1.record_set().update(); });
    run_step(skipped, [&] { Data1.refresh(); });
    return true;
}

void RetrievalRun::copy_fields(SkippedSteps *skipped) const
{
    const MessageSet &messages = desk_.store.messages();
    const auto set_field = [this](const char *column, const QString &value) {
        desk_.purges.Data1.record_set().set_field(QLatin1String(column), value);
    };
    run_step(skipped, [&] { set_field("email", messages.MsgOrigAddress()); });
    run_step(skipped, [&] { set_field("subject", messages.MsgSubject()); });
    run_step(skipped, [&] { set_field("date", messages.MsgDateReceived()); });
    run_step(skipped, [&] { set_field("name", messages.MsgOrigDisplayName()); });
    run_step(skipped, [&] { set_field("text", trim_blanks(messages.MsgNoteText())); });
}

void RetrievalRun::purge_as_agreed() const
{
    const PurgeDesk &desk = desk_.purges;
    if (desk.settings.read(get_isp) == yes) {
        for (const QString &key : returned_mail_keys) {
            ReturnedMailPurge(desk).collect(desk.settings.read(key));
            desk.log.Command1_Click();
            LogReplay(desk).Command10_Click();
        }
        desk.settings.remove(get_isp);
    }
    if (desk.settings.read(get_subject) == yes) {
        SubjectPurge(desk).Command23_Click();
        desk.log.Command1_Click();
        LogReplay(desk).Command10_Click();
        desk.settings.remove(get_subject);
    }
}

void RetrievalRun::purge_ignoring_errors(SkippedSteps &skipped) const
{
    const PurgeDesk &desk = desk_.purges;
    const auto log_and_replay = [&] {
        skipped.attempt([&] { desk.log.Command1_Click(); });
        skipped.attempt([&] { LogReplay(desk).Command10_Click(&skipped); });
    };
    for (const QString &key : returned_mail_keys) {
        skipped.attempt([&] { ReturnedMailPurge(desk).collect(desk.settings.read(key)); });
        log_and_replay();
    }
    skipped.attempt([&] { SubjectPurge(desk).Command23_Click(); });
    log_and_replay();
}

void RetrievalRun::show_work_view_on_master() const
{
    desk_.purges.Data1.set_record_source(" select * from master");
    desk_.purges.Data1.refresh();
}

void RetrievalRun::show_whole_tables(SkippedSteps *skipped) const
{
    run_step(skipped, [this] { desk_.purges.lists.Command28_Click(); });
    run_step(skipped, [this] { desk_.purges.lists.Command20_Click(); });
    desk_.purges.controls.ProgressBar1.setValue(0);
    desk_.show_tab(tab_number::first);
    desk_.finished();
}
