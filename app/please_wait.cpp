#include "app/please_wait.h"

#include "ui_please_wait.h"

void PleaseWait::show()
{
    if (window_.isNull()) {
        window_ = new QWidget(parent_, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                           Qt::WindowDoesNotAcceptFocus);
        // Never the active window: a box that opened over it would go when it is unloaded.
        window_->setAttribute(Qt::WA_ShowWithoutActivating);
        Ui::PleaseWait().setupUi(window_);
    }
    window_->show();
}

void PleaseWait::unload()
{
    delete window_.data();
}
