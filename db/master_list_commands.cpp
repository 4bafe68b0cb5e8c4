#include "db/master_list_commands.h"

#include "db/data_connection.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include <algorithm>

MasterListCommands::MasterListCommands(const ListDesk &desk, const MasterListControls &controls)
    : desk_(desk),
      controls_(controls)
{
}

void MasterListCommands::cmdADD_Click() const
{
    attempt([this] { add_typed_address(); });
}

void MasterListCommands::add_typed_address() const
{
    if (controls_.Text1.text().isEmpty()) {
        desk_.prompts.notice(QStringLiteral("Please enter an eMail address in the textbox"));
    } else {
        RecordSet &master = desk_.Data2.record_set();
        master.add_new();
        master.set_field(QStringLiteral("email"), controls_.Text1.text());
        master.update();
        desk_.Data2.refresh();
    }
    controls_.Text1.clear();
    controls_.cmdADD.setFocus();
}

void MasterListCommands::Command21_Click() const
{
    desk_.Data1.execute(Statement("update master set email =  ' ", controls_.Text7.text(),
                                  " ' where email like '*", controls_.Text2.text(), "*' "));
    desk_.Data2.refresh();
}

void MasterListCommands::Command43_Click() const
{
    attempt([this] { delete_selected_row(); });
}

void MasterListCommands::delete_selected_row() const
{
    desk_.prompts.notice(QStringLiteral("To delete a record, click on the record you wish to "
                                        "delete and then press this button"),
                         NoticeIcon::Information);
    // The work table is asked, not the master list.
    if (desk_.Data1.record_set().record_count() == 0) {
        desk_.prompts.notice(QStringLiteral("The database has no records to delete"));
        return;
    }
    move_to_selected_row();
    RecordSet &master = desk_.Data2.record_set();
    const QString address = master.field(QStringLiteral("email"));
    const qint64 position = master.absolute_position();
    if (!desk_.prompts.ok_cancel(QStringLiteral("Are you sure you want to delete this record?")))
        return;
    // The list may have been read anew while the question stood: only the record asked about goes.
    if (master.absolute_position() != position || master.field(QStringLiteral("email")) != address)
        return;
    master.delete_current();
    desk_.Data2.refresh();
}

// Without a selection it is the first row; the person who is asked shall see which one is meant.
void MasterListCommands::move_to_selected_row() const
{
    QTableView &grid = controls_.MSFlexGrid5;
    const int row = std::max(0, grid.currentIndex().row());
    desk_.Data2.record_set().move_to(row);
    grid.selectRow(row);
}

void MasterListCommands::Command42_Click() const
{
    if (!desk_.prompts.ok_cancel(QLatin1String(delete_all_question)))
        return;
    desk_.Data2.execute("delete * from master");
    desk_.Data2.refresh();
}

void MasterListCommands::Command33_Click() const
{
    const bool ascending = desk_.prompts.ok_cancel(QStringLiteral(
        "This will sort data in ascending order. Click CANCEL to sort in descending order?"));
    if (!desk_.Data2.has_record_set())
        return;
    QTableView &grid = controls_.MSFlexGrid5;
    const int column = std::max(0, grid.currentIndex().column());
    QAbstractItemModel &rows = *grid.model();
    rows.sort(column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
    grid.setCurrentIndex(rows.index(0, column)); // the next sort is by the same column
}

void MasterListCommands::Command36_Click() const
{
    // Not refreshed: the rows of the set that is open are counted.
    desk_.Data2.set_record_source("select * from master");
    desk_.prompts.notice(QStringLiteral("Number of unique records is:   %1")
                             .arg(desk_.Data2.record_set().record_count()));
}

void MasterListCommands::MSFlexGrid5_SelChange() const
{
    const int row = controls_.MSFlexGrid5.currentIndex().row();
    if (row < 0)
        return;
    RecordSet &shown = desk_.Data2.record_set();
    shown.move_to(row);
    const QStringList columns = shown.columns();
    controls_.Text7.setText(shown.field(columns.constFirst()));
    controls_.Text2.setText(columns.size() > 1 ? shown.field(columns[1]) : QString());
}
