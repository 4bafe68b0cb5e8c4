#pragma once

#include <QByteArray>
#include <QPointer>
#include <QString>
#include <QWidget>

class EventHandlers;
class Prompts;
class TextBox;
class QLabel;

/// The window "Import Into Ostrix" with the text that is being imported. It is made when first
/// shown and destroyed when unloaded or closed; what is asked of a window that is not there does
/// nothing.
///
/// Its box shows the beginning of the text, 20,000 characters at most, and says so when there is
/// more: a text document of a hundred megabytes in one line would take minutes and gigabytes.
class ImportWindow
{
public:
    ImportWindow(EventHandlers &handlers, Prompts &prompts);
    ~ImportWindow();
    ImportWindow(const ImportWindow &) = delete;
    ImportWindow &operator=(const ImportWindow &) = delete;

    /// The window opens over `parent`, which must be set before the first show().
    void set_parent(QWidget *parent) { parent_ = parent; }

    void show();
    void unload();
    bool is_shown() const { return !window_.isNull(); }

    /// The text of Text1, whole.
    QString text() const;
    void set_text(const QString &text);
    /// Adds at the end; takes time by the length of `text` alone.
    void append_text(const QString &text);

    /// "Save As": writes the text, and CR LF behind it, to a file that is asked for.
    /// @throws RuntimeError as write_text_file().
    void SaveAs_Click() const;

private:
    void make_window();
    void show_beginning();

    EventHandlers &handlers_;
    Prompts &prompts_;
    QPointer<QWidget> parent_;
    QPointer<QWidget> window_;
    TextBox *Text1 = nullptr; // these two go with the window
    QLabel *shown_part_ = nullptr;
    QString text_;
    QByteArray appended_; // in UTF-8: half the memory
    qsizetype appended_characters_ = 0;
};
