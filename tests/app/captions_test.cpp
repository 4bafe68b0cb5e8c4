#include "app/please_wait.h"
#include "tests/support/program_window.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <gtest/gtest.h>

namespace
{
QStringList words_of_labels(const QWidget &window)
{
    QStringList words;
    const auto labels = window.findChildren<QLabel *>();
    for (const QLabel *label : labels)
        words.append(label->text());
    const auto frames = window.findChildren<QGroupBox *>();
    for (const QGroupBox *frame : frames)
        words.append(frame->title());
    return words;
}

TEST_F(ProgramWindow, FramesAndLabelsHaveTheirWords)
{
    const QStringList words = words_of_labels(window());
    const QStringList expected = {"Profile Name",
                                  "Delete all incorrect addresses returned by ISP",
                                  "Delete all with this subject heading",
                                  "Database Location",
                                  "Log file path",
                                  "Log of deleted emails and emails with s/head",
                                  "Which days?",
                                  "History",
                                  "Session record for this schedule period",
                                  "Set Interval (reduce to 0 to view hours or minutes)",
                                  "Last eMail retrieval finished at:",
                                  "Ostrix",
                                  "Version 1.2",
                                  "Intel / Win 95/98/2000 NT4"};
    for (const QString &text : expected)
        EXPECT_TRUE(words.contains(text)) << text.toStdString();
}

TEST_F(ProgramWindow, BoxesShowTheirToolTipsAsPlaceholdersToo)
{
    const QStringList names = {"Text12", "Text13", "Text30"};
    for (const QString &name : names) {
        const auto &box = control<QWidget>(name);
        EXPECT_EQ(box.property("placeholderText").toString(),
                  name == "Text30" ? QString("System Use Only") : box.toolTip())
            << name.toStdString();
        EXPECT_NE(box.toolTip(), "") << name.toStdString();
    }
}

TEST(PleaseWaitWindow, SaysWhatItAlwaysSaid)
{
    QWidget parent;
    PleaseWait please_wait;
    please_wait.set_parent(&parent);
    please_wait.show();
    const auto *window = parent.findChild<QWidget *>("PleaseWait");
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), "Please Wait!");
    EXPECT_FALSE(window->isModal());
    EXPECT_EQ(
        words_of_labels(*window),
        (QStringList{"Please Wait!",
                     "This message will disappear when the requested task(s) have been completed.\n"
                     "Some task(s) may take a while.\n"
                     "Task(s) may take longer:\n"
                     "a)As the database grows larger\n"
                     "b)If many values need to be manipulated"}));
    const auto labels = window->findChildren<QLabel *>();
    for (const QLabel *label : labels)
        EXPECT_EQ(label->font().family(), "Arial");
    please_wait.show();
    EXPECT_EQ(parent.findChildren<QWidget *>("PleaseWait").size(), 1);
    please_wait.unload();
    EXPECT_FALSE(please_wait.is_shown());
    please_wait.unload();
}
} // namespace
