#pragma once

#include "platform/long_text_box.h"
#include "tests/support/print_qt.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QWheelEvent>
#include <gtest/gtest.h>

inline QString numbered_lines(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QStringLiteral("line %1\r\n").arg(i);
    return text;
}

class LongBox : public testing::Test
{
protected:
    LongBox()
    {
        box.resize(400, 300);
        box.show();
        box.activateWindow();
        box.setFocus();
        QApplication::processEvents();
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&box, static_cast<Qt::Key>(key), modifiers);
        QApplication::processEvents();
    }

    void wheel(int notches)
    {
        const QPointF place(50, 50);
        QWheelEvent event(place, box.mapToGlobal(place), {}, {0, -120 * notches}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(box.viewport(), &event);
        QApplication::processEvents();
    }

    /// The bar of a paged text.
    QScrollBar &bar()
    {
        const auto bars = box.findChildren<QScrollBar *>(Qt::FindDirectChildrenOnly);
        for (QScrollBar *candidate : bars) {
            if (candidate->isVisible())
                return *candidate;
        }
        throw std::runtime_error("no scroll bar of its own");
    }

    void drag_bar_to(int value)
    {
        bar().setSliderDown(true);
        bar().setSliderPosition(value);
        bar().setSliderDown(false);
        QApplication::processEvents();
    }

    void drop(const QString &text, const QPoint &place)
    {
        QMimeData dragged;
        dragged.setText(text);
        QDragEnterEvent enter(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(box.viewport(), &enter);
        QDragMoveEvent move(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(box.viewport(), &move);
        QDropEvent drop(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(box.viewport(), &drop);
        QApplication::processEvents();
    }

    QString top_line() { return box.cursorForPosition({0, 6}).block().text(); }
    QString bottom_line()
    {
        return box.cursorForPosition({0, box.viewport()->height() - 6}).block().text();
    }

    /// Chooses an entry of the context menu.
    void choose(const char *entry)
    {
        bool chosen = false;
        QTimer::singleShot(0, &box, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            auto *action = menu->findChild<QAction *>(QLatin1String(entry));
            ASSERT_NE(action, nullptr) << entry;
            ASSERT_TRUE(action->isEnabled()) << entry;
            chosen = true;
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 20},
                                box.mapToGlobal(QPoint(20, 20)));
        QApplication::sendEvent(box.viewport(), &event);
        EXPECT_TRUE(chosen);
    }

    static constexpr int bounded = 300'000; // characters that a document lays out in no time
    LongTextBox box;
};
