#include "mail/subject_purge.h"

#include "app/settings_store.h"
#include "app/shared_controls.h"
#include "db/data_connection.h"
#include "mail/log_box.h"
#include "platform/words.h"

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
    RecordSet &senders = desk_.Data1.record_set();
    for (senders.move_first(); !senders.eof(); senders.move_next())
        append_entry(desk_.controls.Text27, senders.field(QStringLiteral("email")));
}

void SubjectPurge::show_tables_crossed() const
{
    desk_.Data1.set_record_source("select * from master");
    desk_.Data1.refresh();
    desk_.Data2.set_record_source("select * from system ");
    desk_.Data2.refresh();
}
