#include "platform/event_handlers.h"

#include <QScopeGuard>
#include <QScopedValueRollback>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <utility>

EventHandlers::EventHandlers(Prompts &prompts, Handler close_databases)
    : prompts_(prompts),
      close_databases_(std::move(close_databases))
{
}

void EventHandlers::on_click(QAbstractButton *button, Handler handler)
{
    on(button, &QAbstractButton::clicked, std::move(handler));
}

void EventHandlers::on_triggered(QAction *action, Handler handler)
{
    on(action, &QAction::triggered, std::move(handler));
}

void EventHandlers::run(const Handler &handler)
{
    if (ending_)
        return;
    const QScopedValueRollback<bool> started_by_a_person(attended_, true);
    ++running_;
    const auto done = qScopeGuard([this] { --running_; });
    try {
        handler();
    } catch (const RuntimeError &error) {
        end_program(error);
    } catch (const std::bad_alloc &) {
        end_program(RuntimeError(error_number::out_of_memory, QStringLiteral("Out of memory")));
    } catch (const std::exception &error) {
        end_program(RuntimeError(error_number::internal_error, QString::fromUtf8(error.what())));
    }
}

QList<const QObject *> EventHandlers::bound() const
{
    QList<const QObject *> there;
    for (const auto &sender : bound_) {
        if (!sender.isNull())
            there.append(sender.data());
    }
    return there;
}

void EventHandlers::run_unattended(const Handler &handler)
{
    const QScopedValueRollback<bool> nobody(attended_, false);
    handler();
}

void EventHandlers::end_program(const RuntimeError &error)
{
    ending_ = true;
    std::fprintf(stderr, "%s\n", error.what());
    prompts_.run_time_error(error.report());
    close_databases_();
    // Not exit(): the frames of the commands below this one must neither go on nor be torn down.
    std::_Exit(1);
}
