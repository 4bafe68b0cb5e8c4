#include "send/group_commands.h"

#include "db/bound_line.h"
#include "db/data_connection.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "platform/text_box.h"
#include "platform/text_file.h"
#include "platform/words.h"
#include "send/address_file.h"
#include "send/group_list.h"

#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QScopeGuard>

namespace
{
const QString where_to_store = QStringLiteral(
    "Please enter a filename and path where you would like you group list to be stored!");

// Where a person who cannot go on may write to.
const QString support_contact = QStringLiteral("support@ostrix.example");
} // namespace

void GroupCommands::cmdMkGroups_Click() const
{
    DataConnection &Data1 = desk_.Data1;
    choose_search();
    if (!desk_.prompts.ok_cancel(
            QStringLiteral("Would you like to create a group from your search?")))
        return;
    ask_for_name();
    add_marker_record(Data1); // into the view of before the search
    Data1.refresh();          // now the search runs
    walk(Data1);
    Data1.refresh();
    clear_list();
    Data1.refresh();
    Data1.set_record_source("select distinct email from email");
    const QString walked = walk(Data1); // over the search's rows still
    Data1.refresh();
    Data1.close_record_set();
    save_under_group_name(show_addresses_of(walked));
    desk_.ProgressBar2.setValue(0);
}

// In force from the connection's next refresh on.
void GroupCommands::choose_search() const
{
    const QString wanted = desk_.Text4.text();
    DataConnection &Data1 = desk_.Data1;
    switch (desk_.Combo2.currentIndex()) {
    case 0:
        Data1.set_record_source(
            {"select distinct email from email where email like '*", wanted, "*' "});
        break;
    case 1:
        Data1.set_record_source(
            {"select distinct email from email where subject like '*", wanted, "*' "});
        break;
    case 2:
        Data1.set_record_source(
            {"select distinct email from email where name like '*", wanted, "*' "});
        break;
    case 3:
        Data1.set_record_source(
            {"select distinct email from email where date like '*", wanted, "*' "});
        break;
    case 4:
        Data1.set_record_source(
            {"select distinct email from email where groups like '*", wanted, "*' "});
        break;
    case 5:
        Data1.set_record_source(
            {"select distinct email from email where text like '*", wanted, "*' "});
        break;
    default:
        desk_.prompts.notice(
            QStringLiteral("Please use the drop down list to select a search criteria"));
    }
}

void GroupCommands::ask_for_name() const
{
    desk_.Text29.setText(
        desk_.prompts.input(QStringLiteral("What would you like to call your new Group?")));
}

void GroupCommands::add_marker_record(DataConnection &connection) const
{
    RecordSet &rows = connection.record_set();
    rows.add_new();
    rows.set_field(QStringLiteral("Groups"), desk_.Text29.text());
    rows.set_field(QStringLiteral("email"), desk_.Text29.text());
    rows.update();
}

// What is taken is the master list's current address, whichever connection is walked: over the work
// table it is the same one again and again.
QString GroupCommands::walk(DataConnection &walked) const
{
    clear_list();
    const auto done = qScopeGuard([this] { desk_.progress.clear(); });
    RecordSet &rows = walked.record_set();
    const qint64 count = rows.record_count();
    QString list;
    for (rows.move_first(); !rows.eof(); rows.move_next()) {
        list += desk_.current_address.text() + QStringLiteral("; ");
        desk_.ProgressBar2.setValue(rows.percent_position());
        desk_.progress.tell(QStringLiteral("Address"), rows.absolute_position() + 1, count);
    }
    return list;
}

void GroupCommands::clear_list() const
{
    desk_.RichTextBox1.set_text({});
}

// The list that is saved is the one returned: a scheduled run that comes while a question stands
// empties the box.
QString GroupCommands::show_addresses_of(const QString &list) const
{
    const QString kept =
        keep_addresses(with_cr_lf(list), QStringLiteral(";"), QStringLiteral("; "));
    desk_.RichTextBox1.set_text(kept);
    return kept;
}

// The dialog's name is not taken, only where it was left.
void GroupCommands::save_under_group_name(const QString &list) const
{
    const QString name = desk_.Text29.text();
    desk_.prompts.notice(where_to_store);
    desk_.prompts.save_file({QLatin1String(text_file_filter), desk_.prompts.current_folder()});
    write_text_file(group_file(desk_.prompts.current_folder(), name), list);
}

void GroupCommands::Command69_Click() const
{
    DataConnection &Data2 = desk_.Data2;
    ask_for_name();
    Data2.set_record_source("select * from email2");
    Data2.refresh();
    add_marker_record(Data2);
    Data2.refresh();
    clear_list();
    Data2.refresh();
    Data2.set_record_source("select distinct email from email2");
    walk(Data2); // over all of the table still
    Data2.refresh();
    clear_list();
    Data2.refresh();
    Data2.set_record_source("select distinct email from email2");
    const QString walked = walk(Data2);
    Data2.refresh();
    const QString list = show_addresses_of(walked);
    if (desk_.prompts.ok_cancel(
            QStringLiteral("Is it OK to store the group in the database? If you select CANCEL the "
                           "group will be stored in a file.")))
        store_in_database(list);
    else
        save_under_group_name(list);
    desk_.ProgressBar2.setValue(0);
}

// The whole list is one pattern: a list of two addresses or more changes no row.
void GroupCommands::store_in_database(const QString &list) const
{
    const QString name = desk_.Text29.text();
    desk_.prompts.notice(name);
    desk_.prompts.notice(list);
    desk_.Data2.execute(
        Statement("update email2 set groups =  ' ", name, " ' where email like '*", list, "*' "));
    desk_.Data2.refresh();
}

void GroupCommands::cmdUpdateToDB_Click() const
{
    const QString name = desk_.Text29.text();
    if (name.isEmpty()) {
        desk_.prompts.notice(QStringLiteral("Please enter a group name in the text box and add it "
                                            "to the Database by clickong on the group button"));
        return;
    }
    desk_.Data1.execute(Statement("update email set groups2 =  ' ", desk_.RichTextBox1.text(),
                                  " ' where groups like '*", name, "*' "));
}

void GroupCommands::Command29_Click() const
{
    const QString addresses = desk_.Text12.text();
    if (addresses.isEmpty()) {
        desk_.prompts.notice(
            QStringLiteral("You must have at least one email address in the Address Box"));
        return;
    }
    const QString path =
        desk_.prompts.save_file({QLatin1String(text_file_filter), QLatin1String(address_folder)});
    if (path.isEmpty())
        return;
    clear_list();
    desk_.RichTextBox1.set_text(addresses);
    write_text_file(path, desk_.RichTextBox1.text());
}

void GroupCommands::Command30_Click() const
{
    if (!attempt([this] { save_all_addresses(); }))
        desk_.prompts.notice(
            QStringLiteral("An error occurred. Please check that there is at least one record in "
                           "the database. If the error continues, please report with full details "
                           "to ") +
            support_contact);
    desk_.ProgressBar2.setValue(0);
}

void GroupCommands::save_all_addresses() const
{
    DataConnection &Data2 = desk_.Data2;
    Data2.set_record_source("select distinct email from master");
    Data2.refresh();
    const auto whole_list_again = qScopeGuard([&Data2] {
        Data2.set_record_source("select * from master");
        attempt([&Data2] { Data2.refresh(); });
    });
    if (Data2.record_set().eof())
        throw RuntimeError(error_number::no_current_record, QStringLiteral("No current record."));
    const QString list = show_addresses_of(walk(Data2));
    desk_.prompts.notice(where_to_store);
    const QString path =
        desk_.prompts.save_file({QLatin1String(text_file_filter), QStringLiteral("C:\\Ostrix\\")});
    if (!path.isEmpty())
        write_text_file(path, list);
}

void GroupCommands::Command41_Click() const
{
    desk_.prompts.notice(QStringLiteral(
        "To make smaller groups click the send mail tab. Then click on 'Show all email addresses' "
        "to retrieve the email list. Next tick the 'multiple recipients' checkbox. Then click on "
        "each email address that you want to be part of a group. They will all appear in the "
        "address box. You can scroll down to quickly add adresses. Finally click on the 'make "
        "group' button and choose a file name and location for the group."));
}
