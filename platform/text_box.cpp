#include "platform/text_box.h"

#include "platform/words.h"

#include <QKeyEvent>
#include <QTextCursor>
#include <QTextDocument>

namespace
{
QString without_hidden_breaks(QString text)
{
    for (const char16_t hidden_break : {u'\u2029', u'\uFDD0', u'\uFDD1'})
        text.replace(QChar(hidden_break), QLatin1Char(' '));
    return text;
}
} // namespace

TextBox::TextBox(QWidget *parent) : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
}

QString TextBox::text() const
{
    // Raw: the plain text of a document turns no-break spaces into blanks.
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    return with_cr_lf(text);
}

void TextBox::set_text(const QString &text)
{
    setPlainText(without_hidden_breaks(text));
}

void TextBox::append_text(const QString &text)
{
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(without_hidden_breaks(text));
}

// Shift and Enter break the line, too; the document would have a character of its own for that.
void TextBox::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::InsertLineSeparator)) {
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, event->text());
        QPlainTextEdit::keyPressEvent(&enter);
        event->setAccepted(enter.isAccepted());
    } else {
        QPlainTextEdit::keyPressEvent(event);
    }
}

void TextBox::mouseDoubleClickEvent(QMouseEvent *event)
{
    QPlainTextEdit::mouseDoubleClickEvent(event);
    Q_EMIT double_clicked();
}
