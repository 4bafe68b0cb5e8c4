#include "tests/textedit/manipulator_window.h"

#include "platform/long_text_box.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>

const QString ManipulatorWindow::large_files =
    "This program may not be able to import very large files or may seem to hang momentarily "
    "whilst importing large files";
const QString ManipulatorWindow::put_into_format =
    "This command will put the contents of the view box into the correct file format for import. "
    "See the help file (Press F1)section 3.1. Please ensure that the last line has a comma after "
    "it else the program won't see it.";
const QString ManipulatorWindow::only_from_a_file =
    "This function will remove all lines that do not contain the character in the box to the left "
    "of this command. This function can only be performed from a file. You will be asked to choose "
    "a file. If you want to perform this function with the contents of the view box then save the "
    "contents to a file using the File>Save File As Text command.";
const QString ManipulatorWindow::some_character =
    "Some character that all lines in the list should contain must be inserted in the character "
    "box. For example, in an email list all lines would have a @ character.";
const QString ManipulatorWindow::delete_all = "Are you sure you want to delete all records?";

PleaseWaitWatch::PleaseWaitWatch()
{
    qApp->installEventFilter(this);
}

bool PleaseWaitWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && watched->objectName() == "PleaseWait")
        ++shown_;
    return QObject::eventFilter(watched, event);
}

QWidget &ManipulatorWindow::manipulator()
{
    auto *found = window().findChild<QWidget *>("TextManipulator");
    if (found == nullptr) {
        choose("ManipulateText");
        QApplication::processEvents();
        found = window().findChild<QWidget *>("TextManipulator");
    }
    if (found == nullptr)
        throw std::runtime_error("the manipulator did not open");
    return *found;
}

void ManipulatorWindow::press(const QString &name)
{
    auto &button = tool<QPushButton>(name);
    ASSERT_TRUE(button.isEnabled() && button.isVisible()) << name.toStdString();
    QTest::mouseClick(&button, Qt::LeftButton);
}

void ManipulatorWindow::pick(const QString &name)
{
    auto &menu = tool<QMenu>("File");
    auto &entry = tool<QAction>(name);
    ASSERT_TRUE(menu.actions().contains(&entry) && entry.isEnabled()) << name.toStdString();
    menu.popup(manipulator().mapToGlobal(QPoint(0, 0)));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&entry).center());
}

void ManipulatorWindow::enter(const QString &name, const QString &typed)
{
    auto &box = tool<QLineEdit>(name);
    QTest::mouseClick(&box, Qt::LeftButton);
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, typed);
}

QString ManipulatorWindow::box_text(const QString &box)
{
    return tool<LongTextBox>(box).text();
}

void ManipulatorWindow::set_box_text(const QString &box, const QString &text)
{
    tool<LongTextBox>(box).set_text(text);
}

QStringList ManipulatorWindow::table()
{
    QApplication::processEvents();
    const QAbstractItemModel &model = *tool<QTableView>("MSFlexGrid1").model();
    QStringList emails;
    for (int row = 0; row < model.rowCount(); ++row)
        emails.append(model.index(row, 0).data().toString());
    return emails;
}

void ManipulatorWindow::remove_lines(const QString &file)
{
    boxes.expect_notice(only_from_a_file, NoticeIcon::Information);
    boxes.expect_open_file(file, "Text files (*.*)");
    boxes.expect_notice("finished!");
    press("Command3");
}

void ManipulatorWindow::leave_please_wait_open()
{
    write_file("C:\\Ostrix\\nobody.txt", "nobody");
    boxes.expect_any_notice();
    boxes.expect_any_notice();
    boxes.expect_open_file("nobody.txt", "All files (*.*)");
    boxes.expect_any_notice();
    pick("ImportToClean");
    ASSERT_TRUE(please_wait_is_open());
}
