#pragma once

#include "app/main_window.h"
#include "app/settings_store.h"
#include "platform/qt_prompts.h"
#include "tests/support/box_robot.h"
#include "tests/support/mail_store_double.h"
#include "tests/support/password_fakes.h"
#include "tests/support/private_home.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <memory>

/// The whole program in a private home, for tests through the real window: a freshly made database,
/// real boxes that `boxes` answers with real clicks, a mail store that writes down its calls, and a
/// clock that stands until a test moves it.
///
///     TEST_F(ProgramWindow, …)
///     {
///         boxes.expect_notice("…");
///         click("Command20");
///         EXPECT_EQ(text("Text7"), "");
///     }
///
/// The window is built when first asked for, so that a test can prepare settings, files and rows
/// before the start.
class ProgramWindow : public testing::Test
{
protected:
    ProgramWindow();
    ~ProgramWindow() override;

    /// The window, started up and shown.
    MainWindow &window();
    bool is_open() const { return window_ != nullptr; }
    /// Ends the program as a person does, by closing the window.
    void close_window();

    /// A click on a control: with the mouse, after its tab has been brought to the front; a hidden
    /// button is pressed. Fails the test when the control is disabled.
    void click(const QString &control);
    void double_click(const QString &control);
    /// Opens the menu that holds the entry and clicks on the entry.
    void choose(const QString &entry);
    /// Empties a text box and types into it.
    void type(const QString &control, const QString &text);

    /// The text of a line, text box, button or label; a multi-line text with CR LF.
    QString text(const QString &control);
    void set_text(const QString &control, const QString &text);
    QString caption_of_current_tab();

    /// A control, by its type and name. Fails the test when there is none.
    template <typename Control>
    Control &control(const QString &name)
    {
        auto *found = window().findChild<Control *>(name);
        if (found == nullptr)
            throw std::runtime_error("there is no control " + name.toStdString());
        return *found;
    }

    /// All rows of a table in the database file, each as its fields joined by "|", in the order in
    /// which they were added. Read by a connection of its own: what a killed program would leave.
    QStringList rows(const QString &table, const QString &columns = QStringLiteral("*")) const;
    /// Adds rows behind the program's back; the window sees them at its next refresh.
    void add_master(const QStringList &emails) const;
    void add_system(const QString &email, const QString &subject, const QString &text = {}) const;
    /// Runs any SQL on the database file.
    void run_sql(const QString &statement, const QStringList &values = {}) const;

    /// What a grid shows: a row's cells joined by "|".
    QStringList grid(const QString &name);

    /// The content of a file, "(none)" when it does not exist. Drive notation or native.
    static QByteArray content(const QString &path);
    static void write_file(const QString &path, const QByteArray &content);

    /// The mail store behind the window.
    virtual MailStore &mail_store() { return mail; }

    // In this order: the home is there before all others, and the robot outlives the window.
    PrivateHome home;
    SettingsStore settings;
    QDateTime now{QDate(2026, 3, 4), QTime(5, 6, 7)};
    MailStoreDouble mail;
    FakeKeychain keychain;
    ProfileFile profiles{settings_file(SettingsStore::application, QStringLiteral("profiles"))};
    ScriptedLogOn log_on_answers; // of the window "Mail Profiles", when it asks
    MailAccounts accounts{profiles, keychain, &log_on_answers};
    /// The window "Mail Profiles" meets no network: tests put in what it finds.
    ProfileDesk profile_desk{
        accounts, inbox_opener({}), way_out_trial({}),
        [](const QStringList &, QObject &, const ServicesFound &found) { found({}); }};
    BoxRobot boxes;
    /// Where print jobs go; the desktop of a test has no printer.
    PrinterMaker printer = default_printer;

    const QString database = QStringLiteral("C:\\Ostrix\\Ostrix.mdb");
    /// The same file by the path that a file dialog gives.
    QString native_database() const { return home.file(QStringLiteral("data/Ostrix/Ostrix.mdb")); }

private:
    QWidget &find(const QString &control);
    void bring_to_front(const QWidget &control);

    QtPrompts prompts_;
    std::unique_ptr<MainWindow> window_;
};
