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

// A text document makes line breaks of the first two; none of them stands for anything in mail.
bool is_noncharacter(char16_t c)
{
    return (c >= 0xFDD0 && c <= 0xFDEF) || c >= 0xFFFE;
}

// Notices indent addresses by them; a word that began with one would match no address.
bool is_other_blank(char16_t c)
{
    return c == u'\t' || c == 0xA0;
}

bool ends_word(QChar c)
{
    return c == u' ' || c == u'\t' || is_line_break(c.unicode());
}

// Cuts the text where its last word that ends at `at` or before does. @return how many units went.
qsizetype cut_to_word_end(QString &text, qsizetype at)
{
    const qsizetype size = text.size();
    while (at > 0 && !ends_word(text[at]))
        --at;
    while (at > 0 && ends_word(text[at - 1]))
        --at;
    text.truncate(std::max<qsizetype>(0, at));
    return size - text.size();
}
} // namespace

QString with_crlf(const QString &text)
{
    const char16_t *at = QStringView(text).utf16();
    const char16_t *const end = at + text.size();
    QString result;
    result.reserve(text.size() + text.size() / 16);
    while (at != end) {
        const char16_t *found = std::find_if(at, end, [](char16_t c) {
            return is_line_break(c) || is_other_blank(c) || is_noncharacter(c);
        });
        result.append(reinterpret_cast<const QChar *>(at), found - at);
        if (found == end)
            break;
        result.append(QLatin1String(is_line_break(*found) ? "\r\n" : " "));
        at = found + 1;
        if (*found == u'\r' && at != end && *at == u'\n')
            ++at;
    }
    return result;
}

QString as_one_line(QString text)
{
    const auto is_bad = [](QChar c) {
        return is_control(c.unicode()) || is_noncharacter(c.unicode());
    };
    if (std::ranges::any_of(text, is_bad))
        std::ranges::replace_if(text, is_bad, QChar(u' '));
    return text.trimmed();
}

qsizetype shorten(QString &text, qsizetype limit)
{
    return text.size() <= limit ? 0 : cut_to_word_end(text, limit);
}

qsizetype drop_last_word(QString &text)
{
    return cut_to_word_end(text, text.size() - 1);
}
