#pragma once

#include "mail/send_review.h"

#include <QPointer>
#include <QWidget>

#include <functional>

/// The store's send dialog as a window (its objectName is "SendDialog"): the whole message, to be
/// sent or not.
class QtSendDialog : public SendDialog
{
public:
    /// @param attended  whether a person is there; when it says no, nothing is shown.
    explicit QtSendDialog(std::function<bool()> attended) : attended_(std::move(attended)) {}

    /// The dialog opens over the active window, else over `parent`.
    void set_parent(QWidget *parent) { parent_ = parent; }

    SendAnswer review(const OutgoingMessage &message, const QString &way_out) override;

private:
    std::function<bool()> attended_;
    QPointer<QWidget> parent_;
};
