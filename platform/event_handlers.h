#pragma once

#include "platform/prompts.h"
#include "platform/runtime_error.h"

#include <QAbstractButton>
#include <QAction>
#include <QList>
#include <QPointer>

#include <functional>

/// Binds handlers to controls. Here, and only here, a failure that a handler lets through becomes
/// the run-time error report: the critical box, the databases closed, and the program ended with
/// exit code 1. No later step of any command runs, also when the failing handler ran inside another
/// command's turn of the event loop, and no other handler runs while the report stands. What is
/// no RuntimeError (memory that ran out) ends the program the same way.
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
        bound_.removeIf([](const auto &bound) { return bound.isNull(); });
        bound_.append(sender);
        QObject::connect(sender, signal, sender,
                         [this, handler = std::move(handler)] { run(handler); });
    }

    /// Runs a handler under the rule above.
    void run(const Handler &handler);

    /// Whether a handler runs at this moment, in this or in an outer turn of the event loop.
    bool is_running() const { return running_ > 0; }

    /// How many handlers run at this moment: each but the first began in the middle of another one,
    /// which has given the event loop a turn or waits for a person.
    int depth() const { return running_; }

    /// Runs `handler` as work that no person has started. What a person starts meanwhile is
    /// attended.
    void run_unattended(const Handler &handler);

    /// Whether a person started what runs at this moment, and can answer a dialog.
    bool is_attended() const { return attended_; }

    /// What handlers are bound to, once for each handler, as far as it is still there.
    QList<const QObject *> bound() const;

private:
    [[noreturn]] void end_program(const RuntimeError &error);

    Prompts &prompts_;
    Handler close_databases_;
    QList<QPointer<const QObject>> bound_; // windows come and go
    int running_ = 0;
    bool ending_ = false;
    bool attended_ = true;
};
