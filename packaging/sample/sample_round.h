#pragma once

#include "packaging/sample/box_clicker.h"

#include <QString>
#include <QStringList>
#include <QWidget>

class QAbstractButton;
class QTabWidget;

/// One round on the sample, made by clicks on the real window: "Get Emails" with both purges
/// agreed, then the third heading typed, applied and used, then a message sent. Tells every step
/// and leaves screenshots.
class SampleRound
{
public:
    /// `sample` is the folder with addresses.txt and expected.txt; `screenshots` is made.
    SampleRound(QWidget &window, const QString &sample, const QString &screenshots);

    /// Needs the open window. @return whether the tables lost exactly what they should.
    /// @throws RuntimeError when the sample or the database cannot be read.
    bool run();

private:
    void show_every_tab();
    void get_emails();
    void use_third_heading();
    void send_a_message();
    void check(const QString &stage, const QStringList &headings);
    void check_count(const QString &table, const QString &stage);
    void check_addresses(const QStringList &headings);
    void tell_log() const;
    bool tell_result();

    template <typename Control>
    Control &control(const char *name) const;
    void show_tab(int index);
    void show_tab_of(const QWidget &widget);
    void click(const char *name);
    void type(const char *name, const QString &text);
    void tell_boxes();
    void take_screenshot(const QString &name);
    void take_screenshot_of_window(QWidget *window);
    void expect(bool holds, const QString &fault);

    QWidget &window_;
    QString sample_;
    QString screenshots_;
    BoxClicker boxes_;
    QStringList faults_;
    bool question_is_shown_ = false;
};
