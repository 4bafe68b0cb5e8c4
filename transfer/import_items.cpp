#include "transfer/import_items.h"

#include "platform/runtime_error.h"

#include <algorithm>
#include <limits>
#include <utility>

// The working text may be as long as memory allows: every change is made in place, in one pass, and
// moves whole lines and pieces.

namespace
{
constexpr QChar cr = u'\r';
constexpr QChar lf = u'\n';
constexpr QChar comma = u',';
const QString cr_lf = QStringLiteral("\r\n");

bool ends_line(QChar c)
{
    return c == lf || c == cr;
}

/// By how much the text grows when every line is ended by CR LF.
qsizetype missing_characters(const QString &text)
{
    const qsizetype missing = text.count(lf) + text.count(cr) - 2 * text.count(cr_lf);
    return text.isEmpty() || ends_line(text.back()) ? missing : missing + 2;
}

/// The line ends of a text from the last to the first.
class LineEndsBackwards
{
public:
    LineEndsBackwards(const QChar *text, qsizetype size) : text_(text) { look_before(size); }

    /// Where the next line end begins and ends; -1 and 0 when there is none.
    qsizetype begin() const { return is_pair() ? last() - 1 : last(); }
    qsizetype end() const { return last() + 1; }
    void move_on() { look_before(begin()); }

private:
    qsizetype last() const { return std::max(lf_, cr_); }
    bool is_pair() const { return lf_ > 0 && cr_ == lf_ - 1; }
    void look_before(qsizetype place)
    {
        const QStringView before(text_, place);
        if (lf_ >= place)
            lf_ = before.lastIndexOf(lf);
        if (cr_ >= place)
            cr_ = before.lastIndexOf(cr);
    }

    const QChar *text_;
    qsizetype lf_ = std::numeric_limits<qsizetype>::max();
    qsizetype cr_ = std::numeric_limits<qsizetype>::max();
};

QString with_lines_ended(QString text)
{
    const qsizetype missing = missing_characters(text);
    if (missing == 0)
        return text;
    const bool last_is_open = !ends_line(text.back());
    const qsizetype size = text.size();
    text.resize(size + missing);
    QChar *const characters = text.data();
    QChar *to = characters + text.size();
    const auto write_end = [&to] {
        *--to = lf;
        *--to = cr;
    };
    if (last_is_open)
        write_end();
    // Backwards, so that nothing is written over before it has been read.
    LineEndsBackwards ends(characters, size);
    for (qsizetype from = size;; ends.move_on()) {
        to = std::copy_backward(characters + ends.end(), characters + from, to);
        from = ends.begin();
        if (from < 0)
            return text;
        write_end();
    }
}

QString with_commas_for_line_ends(QString text)
{
    QChar *const begin = text.data();
    QChar *to = begin;
    qsizetype from = 0;
    for (qsizetype end = text.indexOf(cr_lf); end >= 0; end = text.indexOf(cr_lf, from)) {
        to = std::copy(begin + from, begin + end, to);
        *to++ = comma;
        from = end + cr_lf.size();
    }
    to = std::copy(begin + from, begin + text.size(), to);
    text.truncate(to - begin);
    return text;
}

QString addresses_joined_by_blanks(QString text)
{
    QChar *const begin = text.data();
    QChar *to = begin;
    qsizetype from = 0;
    while (from < text.size()) {
        qsizetype end = text.indexOf(comma, from);
        if (end < 0)
            end = text.size();
        if (QStringView(begin + from, end - from).contains(u'@')) {
            if (to != begin)
                *to++ = u' ';
            to = std::copy(begin + from, begin + end, to);
        }
        from = end + 1;
    }
    text.truncate(to - begin);
    text.squeeze();
    return text;
}

QString with_commas_for_blanks(QString text)
{
    text.replace(QLatin1Char(' '), comma);
    return text;
}
} // namespace

ImportItems::ImportItems(const QString &text) : text_(text)
{
    if (text.isEmpty())
        return;
    highest_ = number_ = text.count(comma);
    start_ = text.lastIndexOf(comma) + 1;
}

QString ImportItems::at(qsizetype number) const
{
    if (number < 0 || number > highest())
        throw RuntimeError(error_number::subscript_out_of_range,
                           QStringLiteral("Subscript out of range: there is no item %1 among %2")
                               .arg(number)
                               .arg(highest() + 1));
    for (; number_ > number; --number_)
        start_ = QStringView(text_).first(start_ - 1).lastIndexOf(comma) + 1;
    for (; number_ < number; ++number_)
        start_ = text_.indexOf(comma, start_) + 1;
    const qsizetype end = text_.indexOf(comma, start_);
    return text_.mid(start_, end < 0 ? -1 : end - start_);
}

ImportItems import_items(QString text, const WorkingTextSeen &seen)
{
    for (const auto change : {with_lines_ended, with_commas_for_line_ends,
                              addresses_joined_by_blanks, with_commas_for_blanks}) {
        text = change(std::move(text));
        if (seen)
            seen(text);
    }
    return ImportItems(text);
}
