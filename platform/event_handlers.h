#pragma once

#include "platform/prompts.h"
#include "platform/runtime_error.h"

#include <QAbstractButton>
#include <QAction>

#include <functional>

/// Binds handlers to controls. Here, and only here, a failure that a handler lets through becomes
/// the run-time error report: the critical box, the databases closed, and the program ended with
/// exit code 1. No later step of any command runs, also when the failing handler ran inside another
/// command's turn of the event loop.
class EventHandlers
{
public:
    using Handler = std::function<void()>;

    EventHandlers(Prompts &prompts, Handler close_databases);

    void on_click(QAbstractButton *button, Handler handler) const;
    void on_triggered(QAction *action, Handler handler) const;

    /// Any other signal without arguments that a handler needs.
    template <typename Sender, typename Signal>
    void on(Sender *sender, Signal signal, Handler handler) const
    {
        QObject::connect(sender, signal, sender,
                         [this, handler = std::move(handler)] { run(handler); });
    }

    /// Runs a handler under the rule above.
    void run(const Handler &handler) const;

private:
    [[noreturn]] void end_program(const RuntimeError &error) const;

    Prompts &prompts_;
    Handler close_databases_;
};
