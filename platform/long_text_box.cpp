#include "platform/long_text_box.h"

#include "platform/words.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

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
    outside_.reset();
    anchor_ = position_ = 0;
    show_page(0);
    settle();
}

// An empty page at the beginning: settling finds the rest of the text behind it.
void LongTextBox::show_text(std::shared_ptr<const LongText> text)
{
    show_anew({});
    outside_ = std::move(text);
    settle_later();
}

void LongTextBox::text_has_grown()
{
    settle_later();
}

void LongTextBox::append_text(const QString &text)
{
    const qsizetype top = top_position();
    store_page();
    own_text();
    text_ += document_text(text);
    go_to(top);
    settle();
}

bool LongTextBox::is_paged() const
{
    return page_.start > 0 || page_.end < stored_length();
}

qsizetype LongTextBox::stored_length() const
{
    return outside_ ? outside_->size() : text_.size();
}

QString LongTextBox::stored_stretch(qsizetype start, qsizetype count) const
{
    return outside_ ? document_text(outside_->stretch(start, count)) : text_.mid(start, count);
}

qsizetype LongTextBox::page_end() const
{
    return page_.start + document()->characterCount() - 1;
}

qsizetype LongTextBox::length() const
{
    return page_end() + stored_length() - page_.end;
}

QString LongTextBox::whole() const
{
    QString text = stored_stretch(0, stored_length());
    if (!document()->isModified())
        return text;
    QString page = document()->toRawText();
    page.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return text.replace(page_.start, page_.end - page_.start, page);
}

QString LongTextBox::whole_stretch(qsizetype start, qsizetype count) const
{
    return document()->isModified() ? whole().sliced(start, count) : stored_stretch(start, count);
}

void LongTextBox::own_text()
{
    if (outside_ == nullptr)
        return;
    text_ = stored_stretch(0, stored_length());
    outside_.reset();
}

void LongTextBox::store_page()
{
    if (!document()->isModified())
        return;
    text_ = whole();
    outside_.reset();
    page_.end = page_end();
    document()->setModified(false);
}

TextPage LongTextBox::page_at(qsizetype around) const
{
    return outside_ ? page_around(*outside_, around, page_reach())
                    : page_around(PlainText(text_), around, page_reach());
}

// What is typed into the page must have been stored before.
void LongTextBox::show_page(qsizetype around)
{
    {
        const QScopedValueRollback loading(loading_, true);
        const auto stretch = [this] {
            return stored_stretch(page_.start, page_.end - page_.start);
        };
        is_short_page_ = false;
        page_ = page_at(around);
        is_short_page_ = has_long_cluster(stretch());
        if (is_short_page_)
            page_ = page_at(around);
        setPlainText(stretch());
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
    own_text();
    const qsizetype start = std::min(anchor_, position_);
    text_.remove(start, std::max(anchor_, position_) - start);
    anchor_ = position_ = start;
    show_page(start);
    settle();
}
