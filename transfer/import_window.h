#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>

class EventHandlers;
class ImportItems;
class ImportText;
class LongTextBox;
class Prompts;

/// The window "Import Into Ostrix" with the text that is being imported, which it shares with the
/// import. It is made when first shown and destroyed when unloaded or closed; what is asked of a
/// window that is not there does nothing.
class ImportWindow
{
public:
    ImportWindow(EventHandlers &handlers, Prompts &prompts);
    ~ImportWindow();
    ImportWindow(const ImportWindow &) = delete;
    ImportWindow &operator=(const ImportWindow &) = delete;

    /// The window opens over `parent`, which must be set before anything is shown.
    void set_parent(QWidget *parent) { parent_ = parent; }

    /// Shows the window with this text, whose line breaks are LF.
    void show_text(const QString &text);
    /// Adds an item of the text shown, and a line break, at the text's end. Items are added in the
    /// order in which an import stores them, see ImportText.
    void append_item(const ImportItems &items, qsizetype number);

    void unload();
    bool is_shown() const { return !window_.isNull(); }

    /// "Save As": writes the text, and CR LF behind it, to a file that is asked for.
    /// @throws RuntimeError as TextFileWriter.
    void SaveAs_Click() const;

private:
    void make_window();

    EventHandlers &handlers_;
    Prompts &prompts_;
    QPointer<QWidget> parent_;
    QPointer<QWidget> window_;
    LongTextBox *Text1 = nullptr; // goes with the window
    std::shared_ptr<ImportText> text_;
};
