#include "platform/text_box.h"

#include <QTextCursor>
#include <QTextDocument>

TextBox::TextBox(QWidget *parent) : QPlainTextEdit(parent)
{
    setTabChangesFocus(true);
}

QString TextBox::text() const
{
    // Raw: the plain text of a document turns no-break spaces into blanks.
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, QStringLiteral("\r\n"));
    return text;
}

void TextBox::set_text(const QString &text)
{
    setPlainText(text);
}

void TextBox::append_text(const QString &text)
{
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(text);
}
