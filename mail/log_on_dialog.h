#pragma once

#include "mail/log_on.h"

#include <QPointer>
#include <QWidget>

#include <functional>

/// The store's log-on dialog as a window (its objectName is "LogOnDialog"). OK can be pressed once
/// the path holds an inbox.
class QtLogOnDialog : public LogOnDialog
{
public:
    /// @param attended  whether a person started the run; when it says no, nothing is shown and
    /// nothing answered.
    explicit QtLogOnDialog(std::function<bool()> attended) : attended_(std::move(attended)) {}

    /// The dialog opens over the active window, else over `parent`.
    void set_parent(QWidget *parent) { parent_ = parent; }

    std::optional<QString> choose_inbox(const QString &reason) override;

private:
    std::function<bool()> attended_;
    QPointer<QWidget> parent_;
};
