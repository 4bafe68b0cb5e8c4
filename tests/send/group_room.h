#pragma once

#include "tests/support/program_window.h"

#include <QComboBox>

/// The whole program, and what the commands of the tab "Create Group" need.
class Groups : public ProgramWindow
{
protected:
    const QString name_question = "What would you like to call your new Group?";
    const QString where_to_store =
        "Please enter a filename and path where you would like you group list to be stored!";
    const QString search_question = "Would you like to create a group from your search?";
    const QString database_question =
        "Is it OK to store the group in the database? If you select CANCEL "
        "the group will be stored in a file.";
    const QString text_files = "Text files (*.TXT)";

    void add_email(const QString &email, const QString &column, const QString &value)
    {
        run_sql(QStringLiteral("insert into email(email, %1) values (?, ?)").arg(column),
                {email, value});
    }

    void add_email2(const QStringList &emails)
    {
        for (const QString &email : emails)
            run_sql("insert into email2(email) values (?)", {email});
    }

    /// "Make Group" needs a work-table view with the columns of a marker record.
    void show_message_table()
    {
        window().work_table().set_record_source("email");
        window().work_table().refresh();
    }

    void search_in(int column, const QString &wanted)
    {
        control<QComboBox>("Combo2").setCurrentIndex(column);
        type("Text4", wanted);
    }

    void expect_make_group(const QString &name)
    {
        boxes.expect_ok_cancel(search_question, true);
        boxes.expect_input(name_question, name);
        boxes.expect_notice(where_to_store);
        boxes.expect_save_file({}, text_files);
    }

    QByteArray group(const QString &name) { return content("c:\\Ostrix\\" + name + ".txt"); }
};
