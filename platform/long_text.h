#pragma once

#include <QString>

/// A text that is read a stretch at a time, so that it need not lie in memory in one piece.
class LongText
{
public:
    virtual ~LongText() = default;

    virtual qsizetype size() const = 0;

    /// `count` characters from `start` on, all of them within the text.
    virtual QString stretch(qsizetype start, qsizetype count) const = 0;
};

/// A text in one piece.
class PlainText : public LongText
{
public:
    explicit PlainText(const QString &text) : text_(text) {}

    qsizetype size() const override { return text_.size(); }
    QString stretch(qsizetype start, qsizetype count) const override
    {
        return text_.sliced(start, count);
    }

private:
    QString text_;
};
