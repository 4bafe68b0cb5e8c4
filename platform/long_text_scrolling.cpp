// How the page follows the screen.
#include "platform/long_text_box.h"

#include <QGuiApplication>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>
#include <limits>

namespace
{
// Scroll bars count with 32 bits.
qsizetype characters_a_step(qsizetype length)
{
    return length / std::numeric_limits<int>::max() + 1;
}
} // namespace

// Four screens to either side, so that whatever a key or the wheel does leads to a place within. A
// large page is for who types: undo ends where it moves.
qsizetype LongTextBox::reach() const
{
    const qsizetype least = outside_ ? 1 << 14 : 1 << 16;
    const QFontMetrics metrics = fontMetrics();
    const qsizetype columns = viewport()->width() / std::max(1, metrics.averageCharWidth()) + 1;
    const qsizetype rows = viewport()->height() / std::max(1, metrics.lineSpacing()) + 1;
    return std::max(least, 4 * columns * rows);
}

qsizetype LongTextBox::page_reach() const
{
    return is_short_page_ ? 1 << 13 : reach();
}

qsizetype LongTextBox::top_position() const
{
    const QTextBlock block = firstVisibleBlock();
    const int line = verticalScrollBar()->value() - block.firstLineNumber();
    const QTextLayout &layout = *block.layout();
    const bool laid_out = 0 < line && line < layout.lineCount();
    return page_.start + block.position() + (laid_out ? layout.lineAt(line).textStart() : 0);
}

void LongTextBox::scroll_to(qsizetype top)
{
    const QTextBlock block = document()->findBlock(in_page(top));
    blockBoundingRect(block); // lays the block out: its lines exist from here on
    const QTextLine line = block.layout()->lineForTextPosition(in_page(top) - block.position());
    verticalScrollBar()->setValue(block.firstLineNumber() +
                                  (line.isValid() ? line.lineNumber() : 0));
}

void LongTextBox::go_to(qsizetype top)
{
    store_page();
    show_page(top);
    scroll_to(top);
}

// Not at once: whoever scrolls or types is not done with the document.
void LongTextBox::settle_later()
{
    if (loading_ || settles_later_)
        return;
    settles_later_ = true;
    const auto settle_now = [this] {
        if (settles_later_)
            settle();
    };
    QMetaObject::invokeMethod(this, settle_now, Qt::QueuedConnection);
}

/// Moves the page when the screen has come near one of its ends, and shows where the screen is.
void LongTextBox::settle()
{
    settles_later_ = false;
    // A page that is changed beneath a selection in the making would cut it.
    if (selecting_ && QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
        return;
    const qsizetype top = top_position();
    const qsizetype reach = page_reach();
    const bool near_start = page_.start > 0 && top - page_.start < reach / 4;
    const bool near_end = page_end() < length() && page_end() - top < reach / 2;
    const bool overgrown = page_end() - page_.start > 4 * reach;
    const bool parted = is_paged() && length() <= 2 * reach; // it fits one page
    const bool grew_slow =
        document()->isModified() && !is_short_page_ && has_long_cluster(document()->toPlainText());
    if (near_start || near_end || overgrown || parted || grew_slow)
        go_to(top);
    show_bar();
}

void LongTextBox::show_bar()
{
    const bool paged = is_paged();
    setVerticalScrollBarPolicy(paged ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    setViewportMargins(0, 0, paged ? bar_->sizeHint().width() : 0, 0);
    bar_->setVisible(paged);
    if (!paged || bar_->isSliderDown())
        return;
    const qsizetype top = top_position();
    const QPoint corner = viewport()->rect().bottomRight();
    const qsizetype bottom = page_.start + cursorForPosition(corner).position();
    const qsizetype shown = std::max<qsizetype>(bottom - top, 1);
    const qsizetype step = characters_a_step(length());
    bar_->setPageStep(static_cast<int>(std::max<qsizetype>(shown / step, 1)));
    bar_->setMaximum(static_cast<int>(std::max<qsizetype>((length() - shown) / step, 1)));
    const bool at_end =
        page_end() == length() && verticalScrollBar()->value() == verticalScrollBar()->maximum();
    bar_->setValue(at_end ? bar_->maximum() : static_cast<int>(top / step));
}

void LongTextBox::follow_bar(int action)
{
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
    case QAbstractSlider::SliderSingleStepSub:
    case QAbstractSlider::SliderPageStepAdd:
    case QAbstractSlider::SliderPageStepSub:
        verticalScrollBar()->triggerAction(static_cast<QAbstractSlider::SliderAction>(action));
        break;
    default:
        if (bar_->sliderPosition() == bar_->maximum()) {
            go_to(length());
            verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        } else {
            go_to(bar_->sliderPosition() * characters_a_step(length()));
        }
    }
    settle();
}

void LongTextBox::place_bar()
{
    const QRect inside = contentsRect();
    const int width = bar_->sizeHint().width();
    bar_->setGeometry(inside.right() - width + 1, inside.top(), width, inside.height());
}

void LongTextBox::resizeEvent(QResizeEvent *event)
{
    TextBox::resizeEvent(event);
    place_bar();
    settle_later();
}

void LongTextBox::showEvent(QShowEvent *event)
{
    TextBox::showEvent(event);
    settle_later();
}
