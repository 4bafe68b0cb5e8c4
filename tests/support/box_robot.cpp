#include "tests/support/box_robot.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace
{
QString text_of(const QDialog &dialog)
{
    if (const auto *box = qobject_cast<const QMessageBox *>(&dialog))
        return box->text();
    if (const auto *input = qobject_cast<const QInputDialog *>(&dialog))
        return input->labelText();
    if (const auto *files = qobject_cast<const QFileDialog *>(&dialog))
        return files->acceptMode() == QFileDialog::AcceptSave ? QStringLiteral("save a file")
                                                              : QStringLiteral("open a file");
    return dialog.windowTitle();
}

std::string words(const QString &text)
{
    return text.toStdString();
}

QMessageBox::Icon box_icon(NoticeIcon icon)
{
    return icon == NoticeIcon::Information   ? QMessageBox::Information
           : icon == NoticeIcon::Exclamation ? QMessageBox::Warning
                                             : QMessageBox::NoIcon;
}

/// The pattern, in brackets, that a label like "Text files (*.TXT)" promises.
QString pattern_in(const QString &filter)
{
    const QString promised = filter.mid(std::max<qsizetype>(filter.lastIndexOf(u'('), 0));
    return filter.isEmpty() || promised == QLatin1String("(*.*)") ? QStringLiteral(" (*)")
                                                                  : u' ' + promised;
}

void answer_files(QFileDialog &dialog, const QString &path, const QString &filter)
{
    // What a person reads of a filter: all but the brackets with its pattern, the last ones.
    const QString name_filter = dialog.nameFilters().value(0);
    const QString shown = name_filter.left(name_filter.lastIndexOf(QStringLiteral(" (")));
    EXPECT_EQ(words(shown), words(filter.isEmpty() ? QStringLiteral("All Files") : filter));
    EXPECT_EQ(words(name_filter.mid(shown.size())), words(pattern_in(filter)));
    if (path.isEmpty()) {
        dialog.reject();
        return;
    }
    auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(name, nullptr);
    name->setText(path);
    QTest::keyClick(name, Qt::Key_Return);
    if (dialog.isVisible()) { // an existing file is asked about, or the name was refused
        ADD_FAILURE() << "the file dialog did not take '" << words(path) << "'";
        dialog.reject();
    }
}
} // namespace

BoxRobot::BoxRobot()
{
    qApp->setAttribute(Qt::AA_DontUseNativeDialogs);
    qApp->installEventFilter(this);
}

BoxRobot::~BoxRobot()
{
    qApp->removeEventFilter(this);
    for (const Expectation &expectation : expected_)
        ADD_FAILURE() << "a box never came: " << words(expectation.text);
}

void BoxRobot::expect_box(const QString &text, QMessageBox::Icon icon,
                          QMessageBox::StandardButtons buttons, QMessageBox::StandardButton answer)
{
    expected_.push_back({text, [=](QDialog &dialog) {
                             auto *box = qobject_cast<QMessageBox *>(&dialog);
                             if (box == nullptr) {
                                 ADD_FAILURE() << "not a message box";
                                 dialog.reject();
                                 return;
                             }
                             EXPECT_EQ(box->icon(), icon) << words(text);
                             EXPECT_EQ(box->standardButtons(), buttons) << words(text);
                             EXPECT_EQ(words(box->windowTitle()), "Ostrix");
                             EXPECT_EQ(box->textFormat(), Qt::PlainText);
                             QTest::mouseClick(box->button(answer), Qt::LeftButton);
                         }});
}

void BoxRobot::expect_notice(const QString &text, NoticeIcon icon)
{
    expect_box(text, box_icon(icon), QMessageBox::Ok, QMessageBox::Ok);
}

void BoxRobot::expect_any_notice(NoticeIcon icon)
{
    expect_box({}, box_icon(icon), QMessageBox::Ok, QMessageBox::Ok);
}

void BoxRobot::expect_yes_no(const QString &text, bool yes)
{
    expect_box(text, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
               yes ? QMessageBox::Yes : QMessageBox::No);
}

void BoxRobot::expect_ok_cancel(const QString &text, bool ok)
{
    expect_box(text, QMessageBox::Question, QMessageBox::Ok | QMessageBox::Cancel,
               ok ? QMessageBox::Ok : QMessageBox::Cancel);
}

void BoxRobot::expect_run_time_error(const QString &report)
{
    expect_box(report, QMessageBox::Critical, QMessageBox::Ok, QMessageBox::Ok);
}

void BoxRobot::expect_file(const QString &path, const QString &filter, bool for_saving)
{
    const QString text = for_saving ? QStringLiteral("save a file") : QStringLiteral("open a file");
    expected_.push_back({text, [=](QDialog &dialog) {
                             auto *files = qobject_cast<QFileDialog *>(&dialog);
                             ASSERT_NE(files, nullptr) << "not a file dialog";
                             answer_files(*files, path, filter);
                         }});
}

void BoxRobot::expect_open_file(const QString &path, const QString &filter)
{
    expect_file(path, filter, false);
}

void BoxRobot::expect_save_file(const QString &path, const QString &filter)
{
    expect_file(path, filter, true);
}

void BoxRobot::expect_input(const QString &question, const QString &answer)
{
    expected_.push_back({question, [=](QDialog &dialog) {
                             auto *input = qobject_cast<QInputDialog *>(&dialog);
                             ASSERT_NE(input, nullptr) << "not an input box";
                             if (answer.isNull()) {
                                 input->reject();
                                 return;
                             }
                             input->setTextValue(answer);
                             input->accept();
                         }});
}

void BoxRobot::expect_dialog(const QString &title, std::function<void(QDialog &)> use)
{
    expected_.push_back({title, [=](QDialog &dialog) {
                             use(dialog);
                             if (dialog.isVisible()) {
                                 ADD_FAILURE() << "the dialog stayed open: " << words(title);
                                 dialog.reject();
                             }
                         }});
}

void BoxRobot::before_next_answer(std::function<void()> action)
{
    before_answer_ = std::move(action);
}

bool BoxRobot::eventFilter(QObject *watched, QEvent *event)
{
    auto *dialog = event->type() == QEvent::Show ? qobject_cast<QDialog *>(watched) : nullptr;
    if (dialog != nullptr && dialog->isModal()) {
        QTimer::singleShot(0, this, [this, box = QPointer<QDialog>(dialog)] {
            if (box)
                meet(*box);
        });
    }
    return QObject::eventFilter(watched, event);
}

void BoxRobot::meet(QDialog &dialog)
{
    const QString text = text_of(dialog);
    shown_.append(text);
    if (expected_.empty()) {
        ADD_FAILURE() << "nobody expected the box: " << words(text);
        dialog.reject();
        return;
    }
    const Expectation expectation = expected_.front();
    expected_.pop_front();
    if (!expectation.text.isNull()) {
        EXPECT_EQ(words(text), words(expectation.text));
    }
    if (const auto action = std::exchange(before_answer_, nullptr))
        action();
    expectation.answer(dialog);
}
