#include "mail/header_fields.h"

#include "mail/blank.h"

#include <algorithm>

namespace
{
QByteArrayView without_blanks_behind(QByteArrayView text)
{
    while (!text.isEmpty() && is_blank(text.back()))
        text.chop(1);
    return text;
}

// A name is printable ASCII without blanks; anything else before the colon makes the line no field.
bool is_name(QByteArrayView text)
{
    return !text.isEmpty() && std::ranges::all_of(text, [](char c) { return c > ' ' && c < 127; });
}
} // namespace

bool HeaderFields::next()
{
    while (at_ < block_.size()) {
        const qsizetype line_end = end_of_line(at_);
        const QByteArrayView line = block_.sliced(at_, line_end - at_);
        if (line == "\n" || line == "\r\n") {
            at_ = line_end;
            return false;
        }
        lines_ = block_.sliced(at_, end_of_field(line_end) - at_);
        at_ += lines_.size();
        const qsizetype colon = line.indexOf(':');
        name_ = colon < 0 ? QByteArrayView() : without_blanks_behind(line.first(colon));
        if (is_name(name_)) {
            value_ = lines_.sliced(colon + 1);
            stray_lines_ = -1;
            return true;
        }
        if (stray_lines_ < 0)
            stray_lines_ = at_ - lines_.size();
    }
    return false;
}

bool HeaderFields::is(const char *name) const
{
    return name_.compare(name, Qt::CaseInsensitive) == 0;
}

qsizetype HeaderFields::end_of_line(qsizetype at) const
{
    const qsizetype line_feed = block_.indexOf('\n', at);
    return line_feed < 0 ? block_.size() : line_feed + 1;
}

qsizetype HeaderFields::end_of_field(qsizetype at) const
{
    while (at < block_.size() && is_blank(block_[at]))
        at = end_of_line(at);
    return at;
}

QByteArray unfolded(QByteArrayView value)
{
    QByteArray line;
    line.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const bool is_break =
            value[i] == '\n' || (value[i] == '\r' && i + 1 < value.size() && value[i + 1] == '\n');
        if (!is_break)
            line.append(value[i]);
    }
    return line.trimmed();
}
