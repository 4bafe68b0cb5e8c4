#pragma once

#include "transfer/import_items.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <limits>

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

    /// The window opens over `parent`, which must be set before anything is shown.
    void set_parent(QWidget *parent) { parent_ = parent; }

    /// Shows the window with a text that is still being changed. It is not kept: "Save As" gives
    /// the text of the last show_items().
    void show_text(const QString &text);
    /// Shows the window with the items' text, which is shared, not copied.
    void show_items(const ImportItems &items);
    /// Adds the item of the ones shown with this number, and CR LF, at the text's end. Items are
    /// added in the order in which an import stores them: from the last but one to the first.
    void append_item(qsizetype number);

    void unload();
    bool is_shown() const { return !window_.isNull(); }

    /// The text of Text1, whole.
    QString text() const;

    /// "Save As": writes the text, and CR LF behind it, to a file that is asked for.
    /// @throws RuntimeError as write_text_file().
    void SaveAs_Click() const;

private:
    void make_window();
    void show_beginning(const QString &text);
    void forget();
    void for_each_appended(const std::function<void(const QString &line)> &visit) const;

    static constexpr qsizetype none_appended = std::numeric_limits<qsizetype>::max();

    EventHandlers &handlers_;
    Prompts &prompts_;
    QPointer<QWidget> parent_;
    QPointer<QWidget> window_;
    TextBox *Text1 = nullptr; // these two go with the window
    QLabel *shown_part_ = nullptr;
    ImportItems items_;
    qsizetype last_appended_ = none_appended;
    qsizetype characters_ = 0; // of the text with what is appended
};
