#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Walks the fields of a header block (RFC 5322 2.2), or of any block in that form, up to its first
/// empty line. Stray lines between fields are passed over. Nothing is copied: the views point into
/// the block.
class HeaderFields
{
public:
    explicit HeaderFields(QByteArrayView block) : block_(block) {}

    /// Goes to the next field. @return whether there is one.
    bool next();

    bool is(const char *name) const;
    QByteArrayView name() const { return name_; }
    /// The value as it stands, still folded.
    QByteArrayView value() const { return value_; }
    /// The whole field: its lines with their ends.
    QByteArrayView lines() const { return lines_; }

    /// Once next() is false: where the bytes behind the empty line begin; the block's size when it
    /// has none.
    qsizetype end() const { return at_; }

    /// Once next() is false: where a message's body begins. Lines in front of the empty line that
    /// are no field and have none behind them belong to it: their empty line was forgotten.
    qsizetype body() const { return stray_lines_ < 0 ? at_ : stray_lines_; }

private:
    qsizetype end_of_line(qsizetype at) const;
    qsizetype end_of_field(qsizetype at) const;

    QByteArrayView block_;
    qsizetype at_ = 0;
    qsizetype stray_lines_ = -1;
    QByteArrayView name_;
    QByteArrayView value_;
    QByteArrayView lines_;
};

/// A field's value as one line: the line breaks of folding go, the blanks behind them stay;
/// trimmed.
QByteArray unfolded(QByteArrayView value);
