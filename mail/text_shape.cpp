#include "mail/text_shape.h"

#include <algorithm>

namespace
{
bool is_line_break(char16_t c)
{
    return c == u'\n' || c == u'\r' || c == 0x2028 || c == 0x2029;
}

bool is_control(char16_t c)
{
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}
} // namespace

QString with_crlf(const QString &text)
{
    const char16_t *at = QStringView(text).utf16();
    const char16_t *const end = at + text.size();
    QString result;
    result.reserve(text.size() + text.size() / 16);
    while (at != end) {
        const char16_t *line_end = std::find_if(at, end, is_line_break);
        result.append(reinterpret_cast<const QChar *>(at), line_end - at);
        if (line_end == end)
            break;
        result.append(QLatin1String("\r\n"));
        at = line_end + 1;
        if (*line_end == u'\r' && at != end && *at == u'\n')
            ++at;
    }
    return result;
}

QString as_one_line(QString text)
{
    const auto is_bad = [](QChar c) { return is_control(c.unicode()); };
    if (std::ranges::any_of(text, is_bad))
        std::ranges::replace_if(text, is_bad, QChar(u' '));
    return text.trimmed();
}

qsizetype shorten(QString &text, qsizetype limit)
{
    const qsizetype size = text.size();
    if (size <= limit)
        return 0;
    if (limit > 0 && text[limit - 1].isHighSurrogate())
        --limit;
    text.truncate(limit);
    return size - limit;
}
