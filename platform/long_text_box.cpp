#include "platform/long_text_box.h"

#include "platform/words.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QScrollBar>

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

LongTextBox::LongTextBox(QWidget *parent)
    : TextBox(parent),
      bar_(new QScrollBar(Qt::Vertical, this))
{
    bar_->hide();
    // Breaking at words takes time by the square of a line that has none.
    setWordWrapMode(QTextOption::WrapAnywhere);
    // Keys scroll without a signal of the scroll bar's.
    connect(this, &QPlainTextEdit::updateRequest, this, &LongTextBox::settle_later);
    connect(this, &QPlainTextEdit::textChanged, this, &LongTextBox::settle_later);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &LongTextBox::adopt_cursor);
    connect(this, &QPlainTextEdit::selectionChanged, this, &LongTextBox::adopt_cursor);
    connect(bar_, &QScrollBar::actionTriggered, this, &LongTextBox::follow_bar);
    connect(bar_, &QScrollBar::sliderReleased, this, &LongTextBox::settle_later);
}

QString LongTextBox::text() const
{
    return with_cr_lf(whole());
}

void LongTextBox::set_text(const QString &text)
{
    show_anew(document_text(text));
}

void LongTextBox::share_text(const LongTextBox &other)
{
    show_anew(other.whole());
}

void LongTextBox::show_anew(const QString &text)
{
    text_ = text;
    anchor_ = position_ = 0;
    show_page(0);
    settle();
}

void LongTextBox::append_text(const QString &text)
{
    const qsizetype top = top_position();
    store_page();
    text_ += document_text(text);
    go_to(top);
    settle();
}

bool LongTextBox::is_paged() const
{
    return page_.start > 0 || page_.end < text_.size();
}

qsizetype LongTextBox::page_end() const
{
    return page_.start + document()->characterCount() - 1;
}

qsizetype LongTextBox::length() const
{
    return page_end() + text_.size() - page_.end;
}

QString LongTextBox::whole() const
{
    if (!document()->isModified())
        return text_;
    QString page = document()->toRawText();
    page.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    QString text = text_;
    return text.replace(page_.start, page_.end - page_.start, page);
}

void LongTextBox::store_page()
{
    if (!document()->isModified())
        return;
    text_ = whole();
    page_.end = page_end();
    document()->setModified(false);
}

// What is typed into the page must have been stored before.
void LongTextBox::show_page(qsizetype around)
{
    {
        const QScopedValueRollback loading(loading_, true);
        page_ = page_around(text_, around, reach());
        setPlainText(text_.sliced(page_.start, page_.end - page_.start));
    }
    project_selection();
}

int LongTextBox::in_page(qsizetype position) const
{
    return static_cast<int>(std::clamp(position, page_.start, page_end()) - page_.start);
}

bool LongTextBox::selection_leaves_page() const
{
    return anchor_ != position_ && (std::min(anchor_, position_) < page_.start ||
                                    std::max(anchor_, position_) > page_end());
}

// An end of the selection that lies outside the page stays there until its stand-in is moved.
void LongTextBox::adopt_cursor()
{
    if (loading_)
        return;
    const QTextCursor cursor = textCursor();
    if (!cursor.hasSelection() || cursor.anchor() != in_page(anchor_))
        anchor_ = page_.start + cursor.anchor();
    if (!cursor.hasSelection() || cursor.position() != in_page(position_))
        position_ = page_.start + cursor.position();
}

void LongTextBox::project_selection()
{
    const QScopedValueRollback loading(loading_, true);
    QTextCursor cursor(document());
    cursor.setPosition(in_page(anchor_));
    cursor.setPosition(in_page(position_), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void LongTextBox::bring_cursor_into_page()
{
    if (page_.start <= position_ && position_ <= page_end())
        return;
    store_page();
    show_page(position_);
}

void LongTextBox::select_all()
{
    const int top = verticalScrollBar()->value();
    anchor_ = 0;
    position_ = length();
    project_selection();
    verticalScrollBar()->setValue(top);
}

void LongTextBox::move_to(qsizetype position, bool select)
{
    store_page();
    position_ = position;
    if (!select)
        anchor_ = position;
    show_page(position);
    settle();
}

// The document's own copying asks its cursor, which has no selection when that lies off the page.
void LongTextBox::copy_selection()
{
    if (selection_leaves_page())
        QGuiApplication::clipboard()->setMimeData(createMimeDataFromSelection());
    else
        copy();
}

void LongTextBox::put_cursor_at(const QPoint &place)
{
    anchor_ = position_ = page_.start + cursorForPosition(place).position();
    project_selection();
}

void LongTextBox::remove_selection()
{
    store_page();
    const qsizetype start = std::min(anchor_, position_);
    text_.remove(start, std::max(anchor_, position_) - start);
    anchor_ = position_ = start;
    show_page(start);
    settle();
}

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
    if (is_paged() && moves_own_text) {
        event->ignore();
        return;
    }
    if (is_paged())
        put_cursor_at(event->position().toPoint());
    TextBox::dropEvent(event);
}

QMimeData *LongTextBox::createMimeDataFromSelection() const
{
    if (!selection_leaves_page())
        return TextBox::createMimeDataFromSelection();
    const qsizetype start = std::min(anchor_, position_);
    auto *copied = new QMimeData; // the caller's
    copied->setText(whole().sliced(start, std::max(anchor_, position_) - start));
    return copied;
}

void LongTextBox::insertFromMimeData(const QMimeData *source)
{
    if (isReadOnly() || !source->hasText())
        return;
    const QString text = source->text();
    if (!selection_leaves_page() && text.size() < reach()) {
        TextBox::insertFromMimeData(source);
        return;
    }
    const QString inserted = document_text(text);
    store_page();
    const qsizetype start = std::min(anchor_, position_);
    text_.replace(start, std::max(anchor_, position_) - start, inserted);
    anchor_ = position_ = start + inserted.size();
    show_page(position_);
    settle();
}
