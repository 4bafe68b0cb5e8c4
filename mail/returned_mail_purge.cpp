#include "mail/returned_mail_purge.h"

#include "app/settings_store.h"
#include "app/shared_controls.h"
#include "db/data_connection.h"
#include "db/grid_columns.h"
#include "mail/failed_addresses.h"
#include "mail/log_box.h"
#include "platform/progress_report.h"
#include "platform/runtime_error.h"
#include "platform/twips.h"
#include "platform/words.h"

#include <QCoreApplication>
#include <QLineEdit>

void ReturnedMailPurge::Command22_Click() const
{
    collect(desk_.settings.read(QStringLiteral("Filter")));
}

void ReturnedMailPurge::collect(const QString &heading) const
{
    desk_.controls.Text27.set_text({});
    if (heading.isEmpty())
        return;
    QCoreApplication::processEvents();
    QLineEdit &heading_field = desk_.controls.Text1;
    heading_field.setText(heading);
    heading_field.setText(trim_blanks(heading_field.text()));
    desk_.Data1.set_record_source(
        Statement("select * from system where subject like '*", heading_field.text(), "*' "));
    desk_.Data1.refresh();
    collect_from_notices();
    if (!heading_field.text().isEmpty())
        append_entry(desk_.controls.Text27, heading_field.text());
    show_whole_tables();
}

void ReturnedMailPurge::collect_from_notices() const
{
    RecordSet &notices = desk_.Data1.record_set();
    const int count = as_integer16(notices.record_count());
    if (count == 0)
        return;
    notices.move_first();
    for (int left = count; left > 0; --left) {
        desk_.progress.tell(QStringLiteral("Notice"), count - left + 1, count);
        collect_from_current_notice();
        if (left > 1)
            notices.move_next();
    }
    desk_.progress.clear();
}

void ReturnedMailPurge::collect_from_current_notice() const
{
    const SharedControls &controls = desk_.controls;
    RecordSet &notices = desk_.Data1.record_set();
    const QString sender = notices.field(QStringLiteral("email"));
    append_entry(controls.Text27, sender);
    const FailedAddresses found = failed_addresses(notices.field(QStringLiteral("text")));
    controls.RichTextBox1.set_text(found.lines);
    controls.RichTextBox2.set_text(found.words);
    if (!found.comma_list.isEmpty()) {
        controls.Text35.set_text(found.comma_list);
        controls.Text31.setText(found.last_element);
    }
    append_entries(controls.Text27, found.entries);
    if (!sender.isEmpty())
        append_entry(controls.Text27, sender);
}

void ReturnedMailPurge::show_whole_tables() const
{
    for (int time = 0; time < 2; ++time) {
        desk_.Data1.set_record_source("select * from system");
        desk_.Data1.refresh();
        desk_.Data2.set_record_source("select * from master");
        desk_.Data2.refresh();
    }
    set_column_widths(desk_.controls.MSFlexGrid1, work_table_widths());
}
