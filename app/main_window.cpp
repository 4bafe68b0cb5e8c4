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
#include "platform/prompts.h"
#include "schedule/schedule_tab.h"
#include "send/groups_tab.h"
#include "send/send_mail_tab.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QStatusBar>
#include <QTableView>

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
      hidden_(add_hidden_buttons(*this)),
      progress_(*statusBar(), [this] { repaint_grids(); }),
      log_writer_(controls_.Text27, please_wait_, log_),
      lists_(Data1, Data2, please_wait_, controls_.ProgressBar1),
      purge_desk_{Data1,        Data2,     controls_, services.settings, services.prompts,
                  please_wait_, progress_, lists_,    log_writer_},
      returned_mail_(purge_desk_),
      subject_heading_(purge_desk_),
      replay_(purge_desk_),
      purge_cycles_(purge_desk_),
      typed_heading_(purge_desk_),
      try_out_(Data2, controls_, services.prompts),
      retrieval_({purge_desk_, services.mail, [this](int number) { show_tab(number); },
                  [this] { stop_schedule(); }}),
      table_name_(controls_.Text2, services.settings, Data1, services.prompts),
      warning_switch_(services.settings, services.prompts)
{
    lay_out();
    please_wait_.set_parent(this);
    Data1.setParent(this);
    Data1.setObjectName(QStringLiteral("Data1"));
    Data2.setParent(this);
    Data2.setObjectName(QStringLiteral("Data2"));
    Data1.set_record_source("system");
    Data2.set_record_source("master");
    wire_tabs();
    wire_hidden_buttons();
    wire_menus();
}

MainWindow::~MainWindow()
{
    // The tabs hold references to what this window owns: they go first.
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
    tabs.master.wire(handlers_, desk);
    tabs.send_mail.wire(handlers_, Data2, progress_);
    tabs.groups.wire(handlers_);
    tabs.properties.wire(handlers_, log_writer_, purge_cycles_, replay_);
    tabs.schedule.wire(handlers_, [this] { run_unattended(); });
    tabs.about.wire(handlers_, try_out_);
    tabs.new_email.wire(handlers_, desk, retrieval_);
}

void MainWindow::wire_hidden_buttons()
{
    handlers_.on_click(hidden_.Command11, [this] { lists_.Command11_Click(); });
    handlers_.on_click(hidden_.Command22, [this] { returned_mail_.Command22_Click(); });
    handlers_.on_click(hidden_.Command23, [this] { subject_heading_.Command23_Click(); });
    handlers_.on_click(hidden_.Command27, [this] { typed_heading_.Command27_Click(); });
}

void MainWindow::wire_menus()
{
    handlers_.on_triggered(menus_.Backup, [this] { Backup_Click(); });
    handlers_.on_triggered(menus_.HelpFile, [this] { HelpFile_Click(); });
    handlers_.on_triggered(menus_.ReadTableName, [this] { table_name_.ReadTableName_Click(); });
    handlers_.on_triggered(menus_.ChangeTableName, [this] { table_name_.ChangeTableName_Click(); });
    handlers_.on_triggered(menus_.WarningSwitch, [this] { WarningSwitch_Click(); });
    handlers_.on_triggered(menus_.MailProfiles, [this] { MailProfiles_Click(); });
    handlers_.on(menus_.Tools, &QMenu::aboutToShow,
                 [this] { menus_.WarningSwitch->setChecked(warning_switch_.is_stored()); });
}

void MainWindow::run_unattended()
{
    attended_ = false;
    const auto attended_again = qScopeGuard([this] { attended_ = true; });
    retrieval_.runSchedule_Click();
}

void MainWindow::stop_schedule()
{
    strip_.tabs().schedule.Timer1().stop();
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
