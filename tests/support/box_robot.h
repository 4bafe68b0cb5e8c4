#pragma once

#include "platform/prompts.h"

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QStringList>

#include <deque>
#include <functional>

class QDialog;
class QFileDialog;

/// Answers the program's real boxes and dialogs, in the order of its expectations, with real
/// clicks, and checks each one's text, icon, buttons and title. A box that nobody expected fails
/// the test and is dismissed instead of hanging it; an expectation left over fails the test when
/// the robot goes.
class BoxRobot : public QObject
{
    Q_OBJECT

public:
    BoxRobot();
    ~BoxRobot() override;

    void expect_notice(const QString &text, NoticeIcon icon = NoticeIcon::None);
    /// A notice whose text the test looks up in shown().
    void expect_any_notice(NoticeIcon icon = NoticeIcon::None);
    void expect_yes_no(const QString &text, bool yes);
    void expect_ok_cancel(const QString &text, bool ok);
    void expect_run_time_error(const QString &report);
    /// `path` empty: Cancel is pressed. `filter` is the dialog's first name filter, empty for none.
    void expect_open_file(const QString &path, const QString &filter = {});
    void expect_save_file(const QString &path, const QString &filter = {});
    /// `answer` null: Cancel is pressed.
    void expect_input(const QString &question, const QString &answer);

    /// A dialog that is no box, by its title: `use` does with it what a person would, to its end.
    void expect_dialog(const QString &title, std::function<void(QDialog &)> use);

    /// Runs when the next expected box shows, before it is answered.
    void before_next_answer(std::function<void()> action);

    /// The texts of all boxes so far, in order.
    const QStringList &shown() const { return shown_; }
    bool is_done() const { return expected_.empty(); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Expectation
    {
        QString text;
        std::function<void(QDialog &)> answer;
    };
    void expect_box(const QString &text, QMessageBox::Icon icon,
                    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton answer);
    void expect_file(const QString &path, const QString &filter, bool for_saving);
    void meet(QDialog &dialog);

    std::deque<Expectation> expected_;
    std::function<void()> before_answer_;
    QStringList shown_;
};
