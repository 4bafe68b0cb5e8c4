#include "transfer/import_text.h"

#include "transfer/import_items.h"

#include <algorithm>

namespace
{
constexpr QChar comma = u',';
constexpr QChar lf = u'\n';
} // namespace

ImportText::ImportText(const QString &text) : text_(text) {}

void ImportText::append_item(const ImportItems &items, qsizetype number)
{
    if (items.text().constData() != text_.constData())
        return;
    if (appended_ == 0)
        last_comma_ = text_.lastIndexOf(comma);
    // From the comma in front of the item, or the text's start, to the last one: as many characters
    // as the items with their line breaks have.
    appended_ = last_comma_ - items.place(number) + 1;
}

QString ImportText::stretch(qsizetype start, qsizetype count) const
{
    const qsizetype end = start + count;
    QString result;
    if (start < text_.size())
        result = text_.mid(start, std::min(end, text_.size()) - start);
    if (end > text_.size()) {
        const qsizetype from = std::max(start, text_.size());
        result += appended(from - text_.size(), end - from);
    }
    return result;
}

// The item that ends at a comma begins at `last_comma_ - comma` among what was appended.
QString ImportText::appended(qsizetype start, qsizetype count) const
{
    QString result;
    result.reserve(count);
    while (result.size() < count) {
        const qsizetype place = start + result.size();
        const qsizetype end = text_.indexOf(comma, last_comma_ - place);
        const qsizetype begin = end == 0 ? 0 : text_.lastIndexOf(comma, end - 1) + 1;
        const qsizetype from = begin + place - (last_comma_ - end);
        const qsizetype wanted = count - result.size();
        result += QStringView(text_).sliced(from, std::min(end - from, wanted));
        if (end - from < wanted)
            result += lf;
    }
    return result;
}
