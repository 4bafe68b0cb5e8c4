#include "app/main_window.h"

#include "app/about_tab.h"
#include "app/first_start.h"
#include "app/help_file.h"
#include "app/properties_tab.h"
#include "app/settings_store.h"
#include "app/start_up.h"
#include "db/list_desk.h"
#include "db/master_tab.h"
#include "mail/mail_profiles_dialog.h"
#include "mail/mail_store.h"
#include "mail/new_email_tab.h"
#include "mail/review_window.h"
#include "platform/prompts.h"
#include "platform/skipped_steps.h"
#include "schedule/schedule_tab.h"
#include "schedule/system_log_purge.h"
#include "send/groups_tab.h"
#include "send/send_mail_tab.h"
#include "textedit/text_manipulator.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>

#include <algorithm>
#include <cstdlib>

MainWindow::MainWindow(const Services &services)
    : services_(services),
      handlers_(services.prompts, [this] { engine_.close_all(); }),
      log_(services.clock),
      strip_(*new TabStrip(work_table_rows_, master_rows_,
                           {services.settings, services.prompts, services.mail.session(), Data1},
                           this)),
      controls_(strip_.shared_controls()),
      menus_(add_menus(*menuBar())),
      hidden_(add_hidden_controls(*this)),
      progress_(*statusBar(), [this] { repaint_grids(); }),
      log_writer_(controls_.Text27, please_wait_, log_),
      lists_(Data1, Data2, please_wait_, controls_.ProgressBar1),
      current_work_address_(*hidden_.Text8, Data1, QStringLiteral("Email")),
      current_master_address_(strip_.tabs().groups.Text30(), Data2, QStringLiteral("email")),
      groups_({Data1, Data2, services.prompts, progress_, current_master_address_,
               strip_.tabs().groups.Combo2(), strip_.tabs().groups.Text4(), controls_.Text12,
               controls_.Text29, controls_.RichTextBox1, controls_.ProgressBar2}),
      search_({Data2, services.prompts, progress_, controls_.Text16, controls_.Text23,
               strip_.tabs().send_mail.List1()}),
      purge_desk_{Data1,        Data2,     controls_, services.settings, services.prompts,
                  please_wait_, progress_, lists_,    log_writer_},
      returned_mail_(purge_desk_),
      subject_heading_(purge_desk_),
      replay_(purge_desk_),
      purge_cycles_(purge_desk_),
      typed_heading_(purge_desk_),
      try_out_(Data2, controls_, services.prompts),
      retrieval_(retrieval_desk(services.mail)),
      table_name_(controls_.Text2, services.settings, Data1, services.prompts),
      warning_switch_(services.settings, services.prompts),
      transfer_({Data2, services.prompts, please_wait_, progress_, handlers_, services.printer})
{
    lay_out();
    please_wait_.set_parent(this);
    transfer_.set_parent(this);
    Data1.setParent(this);
    Data1.setObjectName(QStringLiteral("Data1"));
    Data2.setParent(this);
    Data2.setObjectName(QStringLiteral("Data2"));
    Data1.set_record_source("system");
    Data2.set_record_source("master");
    wire_tabs();
    wire_hidden_controls();
    wire_menus();
}

MainWindow::~MainWindow()
{
    // The tabs and the other windows hold references to what this window owns: they go first.
    delete manipulator_.data();
    delete review_window_.data();
    delete takeCentralWidget();
}

void MainWindow::lay_out()
{
    setObjectName(QStringLiteral("Velmoradrane"));
    setWindowTitle(QStringLiteral("Ostrix"));
    setCentralWidget(&strip_);
    resize(1000, 700);
}

void MainWindow::wire_tabs()
{
    const Tabs &tabs = strip_.tabs();
    const ListDesk desk{Data1, Data2, lists_, services_.prompts};
    tabs.master.wire(
        handlers_, desk,
        {[this] { search_.Command19_Click(); }, [this] { search_.Command37_Click(); }});
    tabs.send_mail.wire(handlers_,
                        {Data2, services_.mail, services_.settings, services_.prompts, progress_},
                        groups_);
    tabs.groups.wire(handlers_, groups_, services_.prompts);
    tabs.properties.wire(handlers_, log_writer_, purge_cycles_, replay_);
    tabs.schedule.wire(handlers_, {services_.clock, services_.prompts,
                                   [this](SkippedSteps &skipped) { run_unattended(skipped); },
                                   [this] { return is_in_a_command(); },
                                   [this](const QString &state) { progress_.show_schedule(state); },
                                   [this](const QString &note) { progress_.note(note); }});
    tabs.about.wire(handlers_, try_out_);
    tabs.new_email.wire(handlers_, desk, retrieval_);
}

void MainWindow::wire_hidden_controls()
{
    handlers_.on_click(hidden_.Command11, [this] { lists_.Command11_Click(); });
    handlers_.on_click(hidden_.Command22, [this] { returned_mail_.Command22_Click(); });
    handlers_.on_click(hidden_.Command23, [this] { subject_heading_.Command23_Click(); });
    handlers_.on_click(hidden_.Command27, [this] { typed_heading_.Command27_Click(); });
}

void MainWindow::wire_menus()
{
    handlers_.on_triggered(menus_.Backup, [this] { Backup_Click(); });
    handlers_.on_triggered(menus_.ManipulateText, [this] { ManipulateText_Click(); });
    handlers_.on_triggered(menus_.HelpFile, [this] { HelpFile_Click(); });
    handlers_.on_triggered(menus_.ReadTableName, [this] { table_name_.ReadTableName_Click(); });
    handlers_.on_triggered(menus_.ChangeTableName, [this] { table_name_.ChangeTableName_Click(); });
    handlers_.on_triggered(menus_.WarningSwitch, [this] { WarningSwitch_Click(); });
    handlers_.on_triggered(menus_.Import, [this] { transfer_.Import_Click(); });
    handlers_.on_triggered(menus_.Export, [this] { transfer_.Export_Click(); });
    handlers_.on_triggered(menus_.SaveGrid, [this] { transfer_.SaveGrid_Click(); });
    handlers_.on_triggered(menus_.PrintAddresses, [this] { transfer_.PrintAddresses_Click(); });
    handlers_.on_triggered(menus_.ImportHelp, [this] { transfer_.ImportHelp_Click(); });
    handlers_.on_triggered(menus_.ReviewFilter, [this] { ReviewFilter_Click(); });
    handlers_.on_triggered(menus_.MailProfiles, [this] { MailProfiles_Click(); });
    handlers_.on(menus_.Tools, &QMenu::aboutToShow,
                 [this] { menus_.WarningSwitch->setChecked(warning_switch_.is_stored()); });
}

RetrievalDesk MainWindow::retrieval_desk(MailStore &store)
{
    return {purge_desk_, store, [this](int number) { show_tab(number); },
            [this] { schedule().Timer1().stop(); }, [this] { schedule().retrieval_finished(); }};
}

ScheduleTab &MainWindow::schedule()
{
    return strip_.tabs().schedule;
}

// A run must not come into the middle of a command that gives the event loop a turn. Those that
// wait for a person's answer, each in a box, may wait for a night. The tick is a handler, too.
bool MainWindow::is_in_a_command() const
{
    const auto windows = QApplication::topLevelWidgets();
    const auto boxes = std::ranges::count_if(
        windows, [](const QWidget *window) { return window->isModal() && window->isVisible(); });
    return services_.mail.is_busy() || handlers_.depth() - 1 > boxes;
}

// Nobody is there to read a report: what ends the run is told with what it passed over.
void MainWindow::run_unattended(SkippedSteps &skipped)
{
    try {
        handlers_.run_unattended([&] { retrieval_.runSchedule_Click(skipped); });
        return;
    } catch (const RuntimeError &error) {
        skipped.add(error.description());
    } catch (const std::exception &error) {
        skipped.add(QString::fromUtf8(error.what()));
    }
    show_tab(tab_number::first);
}

void MainWindow::purgeSystemLog(const QString &period, const QDateTime &reference)
{
    purge_system_log(period, reference, services_.clock(), Data1, log_);
}

void MainWindow::open()
{
    handlers_.run([this] {
        const bool prepared = prepare();
        start_up(
            {services_.settings, Data1, Data2, controls_, [this] { show_tab(tab_number::first); }});
        // Only a start without a stored location prepares anything: the next one tries again.
        if (!prepared)
            services_.settings.remove(QStringLiteral("Database"));
    });
    show();
    open_database(Data1);
    open_database(Data2);
}

/// @return whether nothing is missing that the first start should leave.
bool MainWindow::prepare()
{
    try {
        prepare_first_start(services_.settings);
        return true;
    } catch (const RuntimeError &error) {
        services_.prompts.notice(error.description(), NoticeIcon::Exclamation);
        return false;
    }
}

void MainWindow::open_database(DataConnection &connection)
{
    try {
        connection.refresh();
    } catch (const RuntimeError &error) {
        services_.prompts.notice(error.description(), NoticeIcon::Exclamation);
    }
}

void MainWindow::repaint_grids()
{
    work_table_rows_.paint_now(controls_.MSFlexGrid1);
    master_rows_.paint_now(controls_.MSFlexGrid5);
    if (!manipulator_.isNull())
        manipulator_->paint_grid();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->accept();
    engine_.close_all();
    // The frames of a command that gave the event loop a turn must neither go on nor be torn down.
    if (handlers_.is_running())
        std::_Exit(0);
    QApplication::quit();
}

void MainWindow::Backup_Click()
{
    services_.prompts.notice(
        QStringLiteral("The easiest way is to backup the database is to close this application and "
                       "copy and past c:\\Ostrix\\Ostrix.mdb...this path may be different if you "
                       "are not using the default settings...into a new location."));
}

void MainWindow::ManipulateText_Click()
{
    if (manipulator_.isNull()) {
        manipulator_ = new TextManipulator({engine_, services_.prompts, please_wait_, progress_,
                                            handlers_, [this] { HelpFile_Click(); }},
                                           this);
        manipulator_->open();
    }
    manipulator_->bring_to_front();
}

void MainWindow::HelpFile_Click()
{
    services_.prompts.notice(
        QStringLiteral("If the help file does not appear within a few seconds just search for and "
                       "double click on Ostrix.hlp. It's usually in the C:\\Ostrix\\ folder"));
    run_help_launcher();
}

void MainWindow::MailProfiles_Click()
{
    if (profiles_ == nullptr) {
        profiles_ = new MailProfilesDialog(services_.profiles, services_.prompts, this);
        profiles_->wire(handlers_);
    }
    profiles_->run();
}

void MainWindow::WarningSwitch_Click()
{
    warning_switch_.WarningSwitch_Click(menus_.WarningSwitch->isChecked());
    menus_.WarningSwitch->setChecked(warning_switch_.is_stored());
}

void MainWindow::ReviewFilter_Click()
{
    if (review_window_.isNull()) {
        review_window_ = new ReviewWindow(
            {engine_, services_.settings, services_.prompts, progress_, handlers_}, this);
        review_window_->open();
    }
    review_window_->show();
    review_window_->raise();
    review_window_->activateWindow();
}
