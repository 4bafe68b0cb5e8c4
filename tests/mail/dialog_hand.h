#pragma once

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <functional>

/// Does something to the open dialog, once it is there, and closes it if that did not.
class DialogHand : public QObject
{
public:
    explicit DialogHand(std::function<void(QDialog &)> action) : action_(std::move(action))
    {
        QTimer::singleShot(0, this, [this] { act(); });
    }
    bool has_acted() const { return has_acted_; }

private:
    void act()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        has_acted_ = true;
        action_(*dialog);
        if (dialog->isVisible()) {
            ADD_FAILURE() << "the dialog stayed open";
            dialog->reject();
        }
    }

    std::function<void(QDialog &)> action_;
    bool has_acted_ = false;
};

inline QPushButton &button(QDialog &dialog, QDialogButtonBox::StandardButton which)
{
    return *dialog.findChild<QDialogButtonBox *>()->button(which);
}
