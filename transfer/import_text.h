#pragma once

#include "platform/long_text.h"

class ImportItems;

/// What the import window shows: the working text and, behind it, the items that are stored, each
/// with a line break (LF) as its end. The items are stored from the last but one to the first: that
/// is the text itself, read backwards from its last comma, so that they take no memory.
class ImportText : public LongText
{
public:
    explicit ImportText(const QString &text);

    qsizetype size() const override { return text_.size() + appended_; }
    QString stretch(qsizetype start, qsizetype count) const override;

    /// Adds the items from the last but one, or the one added last, to the one with this number.
    /// Does nothing when they are not the items of this text.
    /// @throws RuntimeError 9 for a number that no item has.
    void append_item(const ImportItems &items, qsizetype number);

private:
    QString appended(qsizetype start, qsizetype count) const;

    QString text_;
    qsizetype last_comma_ = -1;
    qsizetype appended_ = 0; // characters
};
