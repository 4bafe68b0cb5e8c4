#include "transfer/import_items.h"

#include "platform/runtime_error.h"

#include <algorithm>
#include <utility>

// The working text may be as long as memory allows: every change is made in place, in one pass, and
// moves whole lines and pieces.

namespace
{
constexpr QChar cr = u'\r';
constexpr QChar lf = u'\n';
constexpr QChar comma = u',';

/// Lets every line end in LF; no text grows by more than one character.
QString with_lines_ended(QString text)
{
    QChar *const begin = text.data();
    QChar *to = begin;
    qsizetype from = 0;
    for (qsizetype end = text.indexOf(cr); end >= 0; end = text.indexOf(cr, from)) {
        to = std::copy(begin + from, begin + end, to);
        const bool is_pair = end + 1 < text.size() && begin[end + 1] == lf;
        from = end + 1;
        if (!is_pair)
            *to++ = lf;
    }
    to = std::copy(begin + from, begin + text.size(), to);
    text.truncate(to - begin);
    if (!text.isEmpty() && !text.endsWith(lf))
        text += lf;
    return text;
}

QString with_commas_for_line_ends(QString text)
{
    text.replace(lf, comma);
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

qsizetype ImportItems::place(qsizetype number) const
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
    return start_;
}

QString ImportItems::at(qsizetype number) const
{
    const qsizetype start = place(number);
    const qsizetype end = text_.indexOf(comma, start);
    return text_.mid(start, end < 0 ? -1 : end - start);
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
