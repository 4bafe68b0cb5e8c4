#include "packaging/sample/sample_round.h"

#include "app/activity_log.h"
#include "packaging/sample/sample_list.h"
#include "platform/drive_path.h"
#include "platform/runtime_error.h"
#include "platform/text_file.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QRegularExpression>
#include <QScreen>
#include <QSet>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace
{
const QString after_retrieval = QStringLiteral("after Get Emails");
const QString after_third_heading = QStringLiteral("after the third heading");
const QStringList first_headings = {QStringLiteral("Filter"), QStringLiteral("Filter1"),
                                    QStringLiteral("Delete")};
const QString third_heading = QStringLiteral("Filter2");

void tell(const QString &line)
{
    std::cout << line.toStdString() << std::endl; // in step with what a crash would leave
}

// What is in the file, seen through a connection that is not the program's.
SQLite::Database open_database()
{
    const QString path = native_path(QStringLiteral("C:\\Ostrix\\Ostrix.mdb"));
    return {QFile::encodeName(path).toStdString(), SQLite::OPEN_READONLY};
}

int row_count(const QString &table)
{
    SQLite::Database database = open_database();
    return database.execAndGet("select count(*) from " + table.toStdString()).getInt();
}

QSet<QString> addresses_in_master()
{
    const SQLite::Database database = open_database();
    SQLite::Statement query(database, "select email from master");
    QSet<QString> addresses;
    while (query.executeStep())
        addresses.insert(QString::fromStdString(query.getColumn(0).getString()));
    return addresses;
}

// The number that expected.txt names for a table at a stage.
int expected_count(const QString &sample, const QString &table, const QString &stage)
{
    return sample_removals(sample, table + QStringLiteral(" rows ") + stage).value(0).toInt();
}

QString file_name_of(const QString &title)
{
    static const QRegularExpression other(QStringLiteral("[^a-z0-9]+"));
    return title.toLower().replace(other, QStringLiteral(" ")).trimmed().replace(u' ', u'-');
}
} // namespace

SampleRound::SampleRound(QWidget &window, const QString &sample, const QString &screenshots)
    : window_(window),
      sample_(sample),
      screenshots_(screenshots)
{
    QObject::connect(&boxes_, &BoxClicker::box_is_open, &window_, [this](const QMessageBox *box) {
        if (!question_is_shown_ && box->icon() == QMessageBox::Question)
            take_screenshot(QStringLiteral("question"));
        question_is_shown_ = question_is_shown_ || box->icon() == QMessageBox::Question;
    });
    QObject::connect(&boxes_, &BoxClicker::window_is_open, &window_,
                     [this](QWidget *shown) { take_screenshot_of_window(shown); });
}

bool SampleRound::run()
{
    if (!QDir().mkpath(screenshots_))
        throw RuntimeError(error_number::path_file_access,
                           QStringLiteral("Cannot make the folder %1").arg(screenshots_));
    expect(QTest::qWaitForWindowExposed(&window_), QStringLiteral("the window did not show"));
    tell(QStringLiteral("Before: master %1 rows, system %2 rows")
             .arg(row_count(QStringLiteral("master")))
             .arg(row_count(QStringLiteral("system"))));
    get_emails();
    use_third_heading();
    send_a_message();
    show_every_tab();
    tell_log();
    return tell_result();
}

void SampleRound::get_emails()
{
    tell(QStringLiteral("Pressing \"Get Emails\""));
    click("Command2");
    tell_boxes();
    check(after_retrieval, first_headings);
}

void SampleRound::use_third_heading()
{
    const QList<SampleHeading> &headings = sample_headings();
    const auto heading = std::find_if(headings.begin(), headings.end(), [](const auto &candidate) {
        return candidate.key == third_heading;
    });
    tell(QStringLiteral("Typing the third heading \"%1\", pressing its \"Apply\" and \"%2\"")
             .arg(heading->text, heading->key));
    type("Text29", heading->text);
    click("Command57");
    click("Command59");
    tell_boxes();
    check(after_third_heading, first_headings + QStringList{third_heading});
}

// The sample's mail program takes it: whatever it would send lies in a folder.
void SampleRound::send_a_message()
{
    const QStringList recipients = {QStringLiteral("keith.orr@example.net"),
                                    QStringLiteral("ulla.lind@mailbox.example")};
    tell(QStringLiteral("Typing a message to two addresses, pressing \"Send Mail\""));
    type("Text12", recipients.join(QStringLiteral("; ")));
    type("Text13", QStringLiteral("Spring planting day"));
    type("Text14", QStringLiteral("We meet at ten at the gate."));
    click("Command13");
    tell_boxes();
    const QDir outbox(QDir::home().filePath(QStringLiteral("Outbox")));
    const QString sent_to = read_text_file(outbox.filePath(QStringLiteral("1.recipients.txt")));
    const QString message = read_text_file(outbox.filePath(QStringLiteral("1.eml")));
    expect(sent_to.split(u'\n', Qt::SkipEmptyParts) == recipients,
           QStringLiteral("the message went to: ") + sent_to);
    expect(message.contains(recipients[0]) && !message.contains(recipients[1]),
           QStringLiteral("the header does not name the first recipient alone"));
    tell(QStringLiteral("  sent to %1, a blind copy to %2").arg(recipients[0], recipients[1]));
    tell(QStringLiteral("  the message lies in %1").arg(outbox.path()));
}

void SampleRound::check(const QString &stage, const QStringList &headings)
{
    check_count(QStringLiteral("master"), stage);
    check_count(QStringLiteral("system"), stage);
    check_addresses(headings);
}

void SampleRound::check_count(const QString &table, const QString &stage)
{
    const int rows = row_count(table);
    const int expected = expected_count(sample_, table, stage);
    tell(QStringLiteral("  %1: %2 rows").arg(table).arg(rows));
    expect(
        rows == expected,
        QStringLiteral("%1 %2: %3 rows instead of %4").arg(table, stage).arg(rows).arg(expected));
}

// Of the addresses that the list began with, exactly those that the headings remove must be gone.
void SampleRound::check_addresses(const QStringList &headings)
{
    QSet<QString> removals;
    for (const QString &key : headings)
        for (const QString &address : sample_removals(sample_, key))
            removals.insert(address);
    const QSet<QString> left = addresses_in_master();
    const QList<SampleAddress> all = sample_addresses(sample_);
    for (const SampleAddress &address : all) {
        const bool should_be_gone = removals.contains(address.email);
        expect(left.contains(address.email) != should_be_gone,
               (should_be_gone ? QStringLiteral("still in the master list: %1")
                               : QStringLiteral("missing from the master list: %1"))
                   .arg(address.email));
    }
    tell(
        QStringLiteral("  of the %1 addresses %2 were to go").arg(all.size()).arg(removals.size()));
}

void SampleRound::show_every_tab()
{
    const auto &tabs = control<QTabWidget>("SSTab1");
    for (int i = 0; i < tabs.count(); ++i) {
        show_tab(i);
        take_screenshot(QStringLiteral("tab-%1-").arg(i + 1) + file_name_of(tabs.tabText(i)));
    }
    show_tab(0);
}

void SampleRound::tell_log() const
{
    tell(QStringLiteral("The last batch (%1):").arg(ActivityLog::last_batch_log));
    tell(read_text_file(ActivityLog::last_batch_log));
    tell(QStringLiteral("Every batch is in %1").arg(native_path(ActivityLog::deletion_log)));
    tell(QStringLiteral("Screenshots are in %1").arg(screenshots_));
}

bool SampleRound::tell_result()
{
    faults_ += boxes_.faults();
    faults_.removeDuplicates();
    for (const QString &fault : faults_)
        tell(QStringLiteral("WRONG: ") + fault);
    if (faults_.isEmpty())
        tell(QStringLiteral("The round went as it should."));
    return faults_.isEmpty();
}

template <typename Control>
Control &SampleRound::control(const char *name) const
{
    auto *found = window_.findChild<Control *>(QLatin1String(name));
    if (found == nullptr)
        throw RuntimeError(error_number::object_not_set,
                           QStringLiteral("The window has no %1").arg(QLatin1String(name)));
    return *found;
}

void SampleRound::show_tab(int index)
{
    const auto &tabs = control<QTabWidget>("SSTab1");
    QTabBar *bar = tabs.tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    expect(tabs.currentIndex() == index,
           QStringLiteral("the tab '%1' did not open").arg(tabs.tabText(index)));
}

void SampleRound::show_tab_of(const QWidget &widget)
{
    const auto &tabs = control<QTabWidget>("SSTab1");
    for (int i = 0; i < tabs.count(); ++i)
        if (tabs.widget(i)->isAncestorOf(&widget))
            show_tab(i);
}

void SampleRound::click(const char *name)
{
    auto &button = control<QAbstractButton>(name);
    show_tab_of(button);
    expect(button.isVisible() && button.isEnabled(),
           QStringLiteral("%1 cannot be clicked").arg(QLatin1String(name)));
    QTest::mouseClick(&button, Qt::LeftButton);
}

void SampleRound::type(const char *name, const QString &text)
{
    auto &box = control<QWidget>(name);
    show_tab_of(box);
    auto *scrolled = qobject_cast<QAbstractScrollArea *>(&box);
    QTest::mouseClick(scrolled != nullptr ? scrolled->viewport() : &box, Qt::LeftButton);
    QTest::keyClicks(&box, text);
}

void SampleRound::tell_boxes()
{
    for (const QString &text : boxes_.take_texts())
        tell(QStringLiteral("  box: ") + text.simplified());
}

// The part of the screen that the window covers, with a box that stands over it.
void SampleRound::take_screenshot(const QString &name)
{
    QTest::qWait(0); // a paint that has been asked for happens first
    const QString path = QStringLiteral("%1/%2.png").arg(screenshots_, name);
    const QRect part = window_.geometry();
    const QPixmap picture =
        window_.screen()->grabWindow(0, part.x(), part.y(), part.width(), part.height());
    expect(picture.save(path), QStringLiteral("cannot write ") + path);
}

void SampleRound::take_screenshot_of_window(QWidget *window)
{
    if (window == &window_ || window->windowTitle().isEmpty()) // a tool tip, a menu
        return;
    const QString path =
        QStringLiteral("%1/%2.png").arg(screenshots_, file_name_of(window->windowTitle()));
    expect(window->grab().save(path), QStringLiteral("cannot write ") + path);
}

void SampleRound::expect(bool holds, const QString &fault)
{
    if (!holds)
        faults_.append(fault);
}
