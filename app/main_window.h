#pragma once

#include "app/activity_log.h"
#include "app/hidden_controls.h"
#include "app/log_writer.h"
#include "app/menus.h"
#include "app/please_wait.h"
#include "app/services.h"
#include "app/shared_controls.h"
#include "app/status_progress.h"
#include "app/tab_strip.h"
#include "app/table_name.h"
#include "app/warning_switch.h"
#include "db/address_lists.h"
#include "db/bound_line.h"
#include "db/data_connection.h"
#include "db/database_engine.h"
#include "db/record_set_model.h"
#include "mail/log_replay.h"
#include "mail/parser_try_out.h"
#include "mail/purge_cycles.h"
#include "mail/retrieval_run.h"
#include "mail/returned_mail_purge.h"
#include "mail/subject_purge.h"
#include "mail/typed_heading_purge.h"
#include "platform/event_handlers.h"
#include "send/address_search.h"
#include "send/group_commands.h"
#include "transfer/transfer_commands.h"

#include <QMainWindow>
#include <QPointer>

class MailProfilesDialog;
class ReviewWindow;
class ScheduleTab;
class TextManipulator;

/// The main window. It sets the tabs side by side, owns what they share (the two data connections,
/// the log, "Please Wait!"), and hands references on.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const Services &services);
    ~MainWindow() override;

    /// Starts up and shows the window. A database that cannot be opened is told in a box.
    void open();

    /// Makes the tab with this number the current one. @throws RuntimeError 5 for no tab's number.
    void show_tab(int number) { strip_.show_tab(number); }

    /// Whether the run that reads mail was started by a person, who can answer a dialog.
    bool is_attended() const { return handlers_.is_attended(); }

    /// Empties the work table when exactly `period` hour boundaries (a number's text; empty: never)
    /// lie between `reference` and now, and says so in the deletion log. No control leads here.
    /// @throws RuntimeError as purge_system_log().
    void purgeSystemLog(const QString &period, const QDateTime &reference);

    DataConnection &work_table() { return Data1; }
    DataConnection &master_list() { return Data2; }
    const SharedControls &controls() const { return controls_; }
    /// "Mail Profiles": opens their window; returns when it is closed.
    void MailProfiles_Click();

    ProgressReport &progress() { return progress_; }
    const EventHandlers &handlers() const { return handlers_; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void wire_tabs();
    void wire_hidden_controls();
    void wire_menus();
    bool is_in_a_command() const;
    void run_unattended(SkippedSteps &skipped);
    RetrievalDesk retrieval_desk(MailStore &store);
    ScheduleTab &schedule();
    void lay_out();
    bool prepare();
    void open_database(DataConnection &connection);
    void repaint_grids();
    void Backup_Click();
    void ManipulateText_Click();
    void HelpFile_Click();
    void WarningSwitch_Click();
    void ReviewFilter_Click();

    Services services_;
    DatabaseEngine engine_;
    DataConnection Data1{engine_};
    DataConnection Data2{engine_};
    RecordSetModel work_table_rows_{Data1};
    RecordSetModel master_rows_{Data2};
    EventHandlers handlers_;
    PleaseWait please_wait_;
    ActivityLog log_;
    TabStrip &strip_; // owned by the window as its central widget
    SharedControls controls_;
    Menus menus_;
    HiddenControls hidden_;
    StatusProgress progress_;
    LogWriter log_writer_;
    AddressLists lists_;
    BoundLine current_work_address_;
    BoundLine current_master_address_;
    GroupCommands groups_;
    AddressSearch search_;
    PurgeDesk purge_desk_;
    ReturnedMailPurge returned_mail_;
    SubjectPurge subject_heading_;
    LogReplay replay_;
    PurgeCycles purge_cycles_;
    TypedHeadingPurge typed_heading_;
    ParserTryOut try_out_;
    RetrievalRun retrieval_;
    TableName table_name_;
    WarningSwitch warning_switch_;
    TransferCommands transfer_;
    QPointer<TextManipulator> manipulator_;
    QPointer<ReviewWindow> review_window_;
    MailProfilesDialog *profiles_ = nullptr; // owned by the window; made when first opened
};
