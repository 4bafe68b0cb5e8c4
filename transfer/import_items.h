#pragma once

#include <QString>

#include <functional>

/// The pieces of a text between its commas, numbered from 0. An empty text has none.
class ImportItems
{
public:
    explicit ImportItems(const QString &text = {});

    /// The highest number; -1 when there are no items.
    qsizetype highest() const { return highest_; }

    /// Quick beside the item that was asked for last.
    /// @throws RuntimeError 9 for a number that no item has.
    QString at(qsizetype number) const;
    /// Where in the text the item begins. Quick and failing as at().
    qsizetype place(qsizetype number) const;

    const QString &text() const { return text_; }

private:
    QString text_;
    qsizetype highest_ = -1;
    // The item asked for last and where it begins: all places would take more than the text.
    mutable qsizetype number_ = -1;
    mutable qsizetype start_ = 0;
};

/// Sees the working text after each of the four changes to it.
using WorkingTextSeen = std::function<void(const QString &text)>;

/// Takes an import file's text apart into the items that are stored:
/// 1. every line (ended by CR LF, LF or CR) gets one line break as its end, the last one too: LF,
///    which a text box hands over as CR LF;
/// 2. every line break becomes a comma;
/// 3. the pieces between commas that hold "@" are joined by blanks, all others go;
/// 4. every blank becomes a comma.
/// So a piece with blanks ends as several items, also ones without "@": nobody sorts them out
/// again. The items are the pieces between the commas of the last text.
ImportItems import_items(QString text, const WorkingTextSeen &seen = {});
