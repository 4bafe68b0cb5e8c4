#pragma once

#include "platform/prompts.h"
#include "platform/runtime_error.h"

#include <QAbstractButton>
#include <QAction>
#include <QList>

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

    void on_click(QAbstractButton *button, Handler handler);
    void on_triggered(QAction *action, Handler handler);

    /// Any other signal without arguments that a handler needs.
    template <typename Sender, typename Signal>
    void on(Sender *sender, Signal signal, Handler handler)
    {
        bound_.append(sender);
        QObject::connect(sender, signal, sender,
                         [this, handler = std::move(handler)] { run(handler); });
    }

    /// Runs a handler under the rule above.
    void run(const Handler &handler);

    /// Whether a handler runs at this moment, in this or in an outer turn of the event loop.
    bool is_running() const { return running_ > 0; }

    /// What handlers are bound to, once for each handler.
    const QList<const QObject *> &bound() const { return bound_; }

private:
    [[noreturn]] void end_program(const RuntimeError &error) const;

    Prompts &prompts_;
    Handler close_databases_;
    QList<const QObject *> bound_;
    int running_ = 0;
};
