#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QStringList>

/// Writes into a journal when a window of these names is shown and, as "turn", the event loop's
/// next turn after that: so that the order of both can be tested.
class TurnJournal : public QObject
{
public:
    TurnJournal(QStringList &journal, const QStringList &windows)
        : journal_(journal),
          windows_(windows)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

    /// Writes "turn" when the event loop gets its next one.
    void await_turn()
    {
        QMetaObject::invokeMethod(
            this, [this] { journal_.append("turn"); }, Qt::QueuedConnection);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && windows_.contains(watched->objectName())) {
            journal_.append(watched->objectName());
            await_turn();
        }
        return false;
    }

private:
    QStringList &journal_;
    QStringList windows_;
};
