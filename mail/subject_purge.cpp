#include "mail/subject_purge.h"

#include "app/settings_store.h"
#include "app/shared_controls.h"
#include "db/data_connection.h"
#include "mail/log_box.h"
#include "platform/progress_report.h"
#include "platform/words.h"

#include <QScopeGuard>

void SubjectPurge::Command23_Click() const
{
    desk_.controls.Text27.set_text({});
    const QString heading = desk_.settings.read(QStringLiteral("Delete"));
    if (heading.isEmpty())
        return;
    desk_.Data1.set_record_source(Statement(
        "select distinct email from system where subject like '*", trim_blanks(heading), "*' "));
    desk_.Data1.refresh();
    if (desk_.Data1.record_set().record_count() == 0)
        return;
    collect_senders();
    show_tables_crossed();
}

void SubjectPurge::collect_senders() const
{
    const auto done = qScopeGuard([this] { desk_.progress.clear(); });
    RecordSet &senders = desk_.Data1.record_set();
    const qint64 count = senders.record_count();
    for (senders.move_first(); !senders.eof(); senders.move_next()) {
        desk_.progress.tell(QStringLiteral("Sender"), senders.absolute_position() + 1, count);
        append_entry(desk_.controls.Text27, senders.field(QStringLiteral("email")));
    }
}

void SubjectPurge::show_tables_crossed() const
{
    desk_.Data1.set_record_source("select * from master");
    desk_.Data1.refresh();
    desk_.Data2.set_record_source("select * from system ");
    desk_.Data2.refresh();
}
