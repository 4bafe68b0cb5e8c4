#pragma once

#include <QPlainTextEdit>
#include <QString>

/// A multi-line text box whose text has CR LF line breaks, whatever the widget keeps inside.
/// CR LF, LF and CR all come back as CR LF. The three characters that a text document itself takes
/// for line breaks (U+2029, U+FDD0, U+FDD1) become blanks, so that no text gains a line; every
/// other character comes back as it was given.
class TextBox : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit TextBox(QWidget *parent = nullptr);

    virtual QString text() const;
    virtual void set_text(const QString &text);

    /// Adds at the end; takes time by the length of `text` alone.
    virtual void append_text(const QString &text);

Q_SIGNALS:
    void double_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
};
