#pragma once

#include "app/activity_log.h"
#include "app/log_writer.h"
#include "app/please_wait.h"
#include "app/settings_store.h"
#include "app/shared_controls.h"
#include "db/address_lists.h"
#include "db/data_connection.h"
#include "db/database_engine.h"
#include "mail/purge_desk.h"
#include "platform/progress_report.h"
#include "platform/text_box.h"
#include "tests/support/private_home.h"
#include "tests/support/recording_prompts.h"

#include <QLineEdit>
#include <QProgressBar>
#include <QStringList>
#include <QTableView>
#include <QWidget>
#include <gtest/gtest.h>

/// What the purges work on, without the main window: real connections to a real database file in a
/// private home, real controls, and prompts and progress that write into one journal.
class PurgeRoom : public testing::Test, private ProgressReport
{
protected:
    PurgeRoom();

    /// Puts rows into the database file and shows both whole tables.
    void insert_master(const QStringList &addresses);
    void insert_system(const QString &email, const QString &subject, const QString &text = {});
    /// One column of a table, in the order stored.
    QStringList column(const QString &table, const QString &name);
    /// A log file's content ("log.log", "system.log"); "(none)" without the file.
    QString log_file(const QString &name) const;
    void write_last_batch(const QByteArray &content) const;
    void drop_table(const QString &table) const;

    PrivateHome home;
    QStringList journal;
    QStringList told;  // progress, and where it was cleared
    QStringList noted; // what a person should know of a run
    RecordingPrompts prompts{journal};
    SettingsStore settings;
    QDateTime now = QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7));
    ActivityLog activity_log{[this] { return now; }};
    DatabaseEngine engine;

    QWidget window;
    QLineEdit Text1, Text2, Text7, Text16, Text23, Text17, Text25, Text29, Text31, Text32, Text33,
        Text34;
    TextBox Text12, Text27, RichTextBox1, Text35, RichTextBox2;
    QProgressBar ProgressBar1, ProgressBar2, ProgressBar3;
    QTableView MSFlexGrid1, MSFlexGrid5;
    SharedControls controls{Text1,        Text2,        Text7,        Text16,       Text23,
                            Text12,       Text17,       Text25,       Text27,       Text29,
                            RichTextBox1, Text31,       Text32,       Text33,       Text34,
                            Text35,       RichTextBox2, ProgressBar1, ProgressBar2, ProgressBar3,
                            MSFlexGrid1,  MSFlexGrid5};

    PleaseWait please_wait;
    DataConnection Data1{engine};
    DataConnection Data2{engine};
    AddressLists lists{Data1, Data2, please_wait, ProgressBar1};
    LogWriter log{Text27, please_wait, activity_log};
    PurgeDesk desk{Data1, Data2, controls, settings, prompts, please_wait, *this, lists, log};

private:
    void tell(const QString &what, qint64 done, qint64 total) override
    {
        told.append(QString("%1 %2 of %3").arg(what).arg(done).arg(total));
    }
    void clear() override { told.append("clear"); }
    void note(const QString &text) override { noted.append(text); }
};
