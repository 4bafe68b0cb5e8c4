#pragma once

#include <QPointer>
#include <QWidget>

/// The modeless "Please Wait!" window that stands beside long work. It is made when first shown and
/// destroyed when unloaded; showing it twice shows one, unloading it when it is not there does
/// nothing.
class PleaseWait
{
public:
    /// The window opens over `parent`, which must be set before the first show().
    void set_parent(QWidget *parent) { parent_ = parent; }

    void show();
    void unload();
    bool is_shown() const { return !window_.isNull(); }

private:
    QPointer<QWidget> parent_;
    QPointer<QWidget> window_;
};
