#include "platform/shown_text.h"

namespace
{
// What would break the line, or make the text read other than it is written.
bool disturbs_line(QChar c)
{
    const char16_t code = c.unicode();
    return c.category() == QChar::Other_Control || code == 0x2028 || code == 0x2029 ||
           code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

QString blanked(QString text, bool keep_lines)
{
    for (QChar &c : text) {
        if (disturbs_line(c) && !(keep_lines && c == QLatin1Char('\n')))
            c = QLatin1Char(' ');
    }
    return text;
}
} // namespace

QString one_line(const QString &text)
{
    return blanked(text, false);
}

// Escaped, since a tool tip takes text that looks like markup for markup.
QString plain_tool_tip(const QString &text)
{
    if (text.isEmpty())
        return {};
    return QStringLiteral("<p style=\"white-space: pre-wrap\">") +
           blanked(text, true).toHtmlEscaped() + QStringLiteral("</p>");
}
