// Keys, mouse, clipboard: what works on the whole text, of which the document knows a page.
#include "platform/long_text_box.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>

#include <algorithm>
#include <memory>

namespace
{
bool removes_text(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Delete || event.key() == Qt::Key_Backspace ||
           event.matches(QKeySequence::DeleteEndOfWord) ||
           event.matches(QKeySequence::DeleteStartOfWord);
}

bool types_text(const QKeyEvent &event)
{
    if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)
        return true;
    const bool command =
        event.modifiers() == Qt::ControlModifier || event.modifiers() == Qt::AltModifier;
    return !command && !event.text().isEmpty() && event.text().at(0).isPrint();
}

bool is_modifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_AltGr || key == Qt::Key_Meta || key == Qt::Key_CapsLock;
}
} // namespace

/// Does what a key asks for as far as the document, which knows its page only, cannot.
/// @return whether that was all of it.
bool LongTextBox::acts_across_pages(const QKeyEvent &event)
{
    using enum QKeySequence::StandardKey;
    if (event.matches(SelectAll)) {
        select_all();
        return true;
    }
    if (event.matches(MoveToStartOfDocument) || event.matches(SelectStartOfDocument)) {
        move_to(0, event.matches(SelectStartOfDocument));
        return true;
    }
    if (event.matches(MoveToEndOfDocument) || event.matches(SelectEndOfDocument)) {
        move_to(length(), event.matches(SelectEndOfDocument));
        return true;
    }
    if (event.matches(Copy)) {
        copy_selection();
        return true;
    }
    if (isReadOnly() || is_modifier(event.key()))
        return false;
    if (selection_leaves_page()) {
        if (event.matches(Cut))
            copy_selection();
        if (removes_text(event) || types_text(event) || event.matches(Cut)) {
            remove_selection();
            return !types_text(event);
        }
    }
    bring_cursor_into_page();
    return false;
}

void LongTextBox::keyPressEvent(QKeyEvent *event)
{
    if (is_paged() && acts_across_pages(*event))
        event->accept();
    else
        TextBox::keyPressEvent(event);
}

void LongTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    const bool composes = !event->preeditString().isEmpty() || !event->commitString().isEmpty();
    if (is_paged() && !isReadOnly() && composes) {
        if (selection_leaves_page())
            remove_selection();
        bring_cursor_into_page();
    }
    TextBox::inputMethodEvent(event);
}

void LongTextBox::mousePressEvent(QMouseEvent *event)
{
    const bool keeps_selection =
        event->button() == Qt::RightButton || event->modifiers().testFlag(Qt::ShiftModifier);
    // It cannot be dragged elsewhere: only the page's part of it would go there. The middle button
    // pastes where it is pressed.
    const bool pastes = is_paged() && event->button() == Qt::MiddleButton;
    if (pastes || (selection_leaves_page() && !keeps_selection))
        put_cursor_at(event->pos());
    selecting_ = true;
    TextBox::mousePressEvent(event);
}

void LongTextBox::mouseReleaseEvent(QMouseEvent *event)
{
    TextBox::mouseReleaseEvent(event);
    selecting_ = false;
    settle_later();
}

void LongTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
    const auto rebind = [&menu, this](const char *name, auto does) {
        if (auto *entry = menu->findChild<QAction *>(QLatin1String(name))) {
            entry->setEnabled(entry->isEnabled() || selection_leaves_page());
            entry->disconnect(SIGNAL(triggered(bool)));
            connect(entry, &QAction::triggered, this, does);
        }
    };
    if (is_paged()) {
        rebind("select-all", [this] { select_all(); });
        rebind("edit-paste", [this] {
            bring_cursor_into_page();
            paste();
        });
    }
    if (selection_leaves_page()) {
        rebind("edit-copy", [this] { copy_selection(); });
        rebind("edit-delete", [this] { remove_selection(); });
        rebind("edit-cut", [this] {
            copy_selection();
            remove_selection();
        });
    }
    menu->exec(event->globalPos());
}

void LongTextBox::dropEvent(QDropEvent *event)
{
    // What is moved within the box would go by places in the page, which the move itself changes.
    const bool moves_own_text = event->source() == this || event->source() == viewport();
    const bool is_large = event->mimeData()->text().size() >= reach();
    if ((is_paged() || is_large) && moves_own_text) {
        end_drag();
        event->ignore();
        return;
    }
    if (is_paged() || is_large)
        put_cursor_at(event->position().toPoint());
    if (is_large) { // the document would have it inserted in the middle of a change of its own
        end_drag();
        insertFromMimeData(event->mimeData());
        event->acceptProposedAction();
    } else {
        TextBox::dropEvent(event);
    }
}

// A drop that does not reach the text box leaves it scrolling, with a caret where the drag was
// last.
void LongTextBox::end_drag()
{
    QDragLeaveEvent leave;
    dragLeaveEvent(&leave);
}

QMimeData *LongTextBox::createMimeDataFromSelection() const
{
    if (!selection_leaves_page())
        return TextBox::createMimeDataFromSelection();
    const qsizetype start = std::min(anchor_, position_);
    auto *copied = new QMimeData; // the caller's
    copied->setText(whole_stretch(start, std::max(anchor_, position_) - start));
    return copied;
}

void LongTextBox::insertFromMimeData(const QMimeData *source)
{
    if (isReadOnly() || !source->hasText())
        return;
    const QString text = source->text();
    if (!selection_leaves_page() && text.size() < reach() && !has_long_cluster(text)) {
        TextBox::insertFromMimeData(source);
        return;
    }
    const QString inserted = document_text(text);
    if (!selection_leaves_page())
        adopt_cursor(); // the middle button moves it without a word
    store_page();
    own_text();
    const qsizetype start = std::min(anchor_, position_);
    text_.replace(start, std::max(anchor_, position_) - start, inserted);
    anchor_ = position_ = start + inserted.size();
    show_page(position_);
    settle();
}
