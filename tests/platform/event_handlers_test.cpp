#include "platform/event_handlers.h"
#include "platform/qt_prompts.h"
#include "tests/support/box_robot.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

namespace
{
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(EventHandlers, AFailureIsReportedAndEndsTheProgram)
{
    const auto fail = [] {
        BoxRobot robot;
        QtPrompts prompts;
        EventHandlers handlers(prompts, [] { std::fputs("databases closed\n", stderr); });
        QPushButton button;
        handlers.on_click(&button, [] { throw RuntimeError(53, "File not found: 'x'"); });
        robot.expect_run_time_error("Run-time error '53':\n\nFile not found: 'x'");
        button.click();
        std::fputs("went on\n", stderr);
    };
    EXPECT_EXIT(fail(), testing::ExitedWithCode(1),
                AllOf(HasSubstr("Run-time error '53':\n\nFile not found: 'x'\n"),
                      HasSubstr("databases closed\n"), Not(HasSubstr("went on"))));
}

TEST(EventHandlers, KnowWhatIsBoundAndWhetherAHandlerRuns)
{
    QtPrompts prompts;
    EventHandlers handlers(prompts, [] {});
    QPushButton outer;
    QPushButton inner;
    QList<bool> running;
    handlers.on_click(&inner, [&] { running.append(handlers.is_running()); });
    handlers.on_click(&outer, [&] {
        inner.click();
        running.append(handlers.is_running()); // the outer one still does
    });
    outer.click();
    EXPECT_EQ(running, (QList<bool>{true, true}));
    EXPECT_FALSE(handlers.is_running());
    EXPECT_EQ(handlers.bound(), (QList<const QObject *>{&inner, &outer}));
}

TEST(EventHandlers, NoStepOfAnOuterCommandRunsAfterAFailureInsideItsTurnOfTheEventLoop)
{
    const auto fail = [] {
        BoxRobot robot;
        QtPrompts prompts;
        EventHandlers handlers(prompts, [] {});
        QPushButton outer;
        QPushButton inner;
        handlers.on_click(&outer, [&] {
            QTimer::singleShot(0, &inner, &QPushButton::click);
            QCoreApplication::processEvents();
            std::fputs("went on\n", stderr);
        });
        handlers.on_click(&inner, [] { throw RuntimeError(6, "Overflow"); });
        robot.expect_run_time_error("Run-time error '6':\n\nOverflow");
        outer.click();
    };
    EXPECT_EXIT(fail(), testing::ExitedWithCode(1),
                AllOf(HasSubstr("Run-time error '6':\n\nOverflow\n"), Not(HasSubstr("went on"))));
}
} // namespace
