#pragma once

#include "platform/long_text.h"
#include "platform/text_box.h"
#include "platform/text_page.h"

#include <memory>

class QKeyEvent;
class QScrollBar;

/// A text box for texts of any length and shape, also fifty million characters in one line or in as
/// many. A text document takes seconds and gigabytes for those, so the box keeps the text itself
/// and its document holds a page of it: the stretch around what is on the screen. A longer text has
/// a scroll bar of its own, which counts characters; the page follows as it is scrolled.
///
/// Selecting, copying, cutting, typing over and pasting work on the whole text. Undo goes back to
/// when the page last changed, and assistive programs read the page. A text of one page is shown as
/// in any text box.
class LongTextBox : public TextBox
{
    Q_OBJECT

public:
    explicit LongTextBox(QWidget *parent = nullptr);

    QString text() const override;
    void set_text(const QString &text) override;
    void append_text(const QString &text) override;

    /// Takes another box's text without a copy of it.
    void share_text(const LongTextBox &other);

    /// Shows a text that lies elsewhere, with LF as its line breaks, without a copy of it. It is
    /// read where the box shows it, for the first time in the event loop's next turn, and becomes
    /// the box's own when it is changed here. It may grow at its end: see text_has_grown().
    void show_text(std::shared_ptr<const LongText> text);

    /// Tells that the text of show_text() has become longer. Takes no time by the text's length.
    void text_has_grown();

    /// Whether the document holds only a page of the text.
    bool is_paged() const;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    QMimeData *createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    // The text and its page. Positions count in the whole text.
    qsizetype stored_length() const;
    QString stored_stretch(qsizetype start, qsizetype count) const;
    qsizetype length() const;
    qsizetype page_end() const;
    QString whole() const;
    QString whole_stretch(qsizetype start, qsizetype count) const;
    void show_anew(const QString &text);
    void own_text();
    void store_page();
    TextPage page_at(qsizetype around) const;
    void show_page(qsizetype around);

    // The selection. The document's cursor stands for it, cut to the page.
    int in_page(qsizetype position) const;
    bool selection_leaves_page() const;
    void adopt_cursor();
    void project_selection();
    void bring_cursor_into_page();
    void select_all();
    void move_to(qsizetype position, bool select);
    void copy_selection();
    void remove_selection();
    void put_cursor_at(const QPoint &place);
    void end_drag();
    bool acts_across_pages(const QKeyEvent &event);

    // Scrolling.
    qsizetype reach() const;
    qsizetype page_reach() const;
    qsizetype top_position() const;
    void scroll_to(qsizetype top);
    void go_to(qsizetype top);
    void settle_later();
    void settle();
    void follow_bar(int action);
    void show_bar();
    void place_bar();

    // With LF; without what was typed into the page since store_page().
    QString text_;
    std::shared_ptr<const LongText> outside_; // in place of text_
    TextPage page_;
    bool is_short_page_ = false; // it holds what takes long to lay out
    qsizetype anchor_ = 0;
    qsizetype position_ = 0;
    QScrollBar *bar_; // in place of the box's own while the text is paged
    bool loading_ = false;
    bool settles_later_ = false;
    bool selecting_ = false; // with the mouse
};
