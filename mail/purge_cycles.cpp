#include "mail/purge_cycles.h"

#include "app/log_writer.h"
#include "app/please_wait.h"
#include "app/settings_store.h"
#include "db/address_lists.h"
#include "platform/prompts.h"

#include <QCoreApplication>

PurgeCycles::PurgeCycles(const PurgeDesk &desk)
    : desk_(desk),
      returned_mail_(desk),
      subject_heading_(desk),
      replay_(desk)
{
}

void PurgeCycles::cmdFilterit_Click() const
{
    run_returned_mail_cycle(QStringLiteral("Filter"));
}

void PurgeCycles::Command58_Click() const
{
    run_returned_mail_cycle(QStringLiteral("Filter1"));
}

void PurgeCycles::Command59_Click() const
{
    run_returned_mail_cycle(QStringLiteral("Filter2"));
}

void PurgeCycles::run_returned_mail_cycle(const QString &key) const
{
    QCoreApplication::processEvents();
    desk_.please_wait.show();
    const QString heading = desk_.settings.read(key);
    if (heading.isEmpty()) {
        tell_no_heading();
        return;
    }
    QCoreApplication::processEvents();
    collect_log_and_replay([&] { returned_mail_.collect(heading); });
}

void PurgeCycles::cmdDel_Click() const
{
    QCoreApplication::processEvents();
    desk_.please_wait.show();
    if (desk_.settings.read(QStringLiteral("Delete")).isEmpty()) {
        tell_no_heading();
        return;
    }
    collect_log_and_replay([&] { subject_heading_.Command23_Click(); });
}

void PurgeCycles::collect_log_and_replay(const std::function<void()> &collect) const
{
    collect();
    desk_.log.Command1_Click();
    replay_.Command10_Click();
    desk_.please_wait.unload();
    desk_.lists.Command28_Click();
    desk_.lists.Command20_Click();
    desk_.prompts.notice(QStringLiteral("Finished!"), NoticeIcon::None);
}

// The "Please Wait!" window stays open here, as it always did.
void PurgeCycles::tell_no_heading() const
{
    desk_.prompts.notice(
        QStringLiteral(
            "No subject heading has been set. Add a subject heading and click the apply button"),
        NoticeIcon::None);
}
