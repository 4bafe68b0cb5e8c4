#include "platform/event_handlers.h"
#include "platform/qt_prompts.h"
#include "tests/support/box_robot.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <new>
#include <stdexcept>

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
        QPushButton button;
        QPushButton other;
        // The box has been met by now: what the robot found wrong with it shows in the exit code.
        EventHandlers handlers(prompts, [] {
            std::fputs(testing::Test::HasFailure() ? "a wrong box\n" : "databases closed\n",
                       stderr);
        });
        handlers.on_click(&button, [] { throw RuntimeError(53, "File not found: 'x'"); });
        handlers.on_click(&other, [] { std::fputs("went on\n", stderr); });
        robot.before_next_answer([&] { other.click(); });
        robot.expect_run_time_error("Run-time error '53':\n\nFile not found: 'x'");
        button.click();
        std::fputs("went on\n", stderr);
    };
    EXPECT_EXIT(fail(), testing::ExitedWithCode(1),
                AllOf(HasSubstr("Run-time error '53':\n\nFile not found: 'x'\n"),
                      HasSubstr("databases closed\n"), Not(HasSubstr("went on"))));
}

TEST(EventHandlers, WhatIsNoRunTimeErrorEndsTheProgramTheSameWay)
{
    const auto fail_with = [](const EventHandlers::Handler &handler) {
        BoxRobot robot;
        QtPrompts prompts;
        EventHandlers handlers(prompts, [] { std::fputs("databases closed\n", stderr); });
        robot.expect_any_notice();
        handlers.run(handler);
    };
    EXPECT_EXIT(fail_with([] { throw std::bad_alloc(); }), testing::ExitedWithCode(1),
                AllOf(HasSubstr("Run-time error '7':"), HasSubstr("databases closed\n")));
    EXPECT_EXIT(fail_with([] { throw std::out_of_range("no such place"); }),
                testing::ExitedWithCode(1),
                AllOf(HasSubstr("no such place"), HasSubstr("databases closed\n")));
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
    {
        QPushButton passing;
        handlers.on_click(&passing, [] {});
        EXPECT_EQ(handlers.bound().size(), 3);
    }
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
