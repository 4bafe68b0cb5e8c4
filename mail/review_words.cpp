#include "mail/review_words.h"

#include "platform/words.h"

#include <QLocale>

#include <algorithm>

namespace
{
constexpr qsizetype most_characters = 2000;
constexpr int most_lines = 30;

/// Where the 31st line begins; the text's size when there is none.
qsizetype end_of_lines(const QString &text)
{
    qsizetype end = 0;
    for (int line = 0; line < most_lines; ++line) {
        end = text.indexOf(QLatin1Char('\n'), end) + 1;
        if (end == 0)
            return text.size();
    }
    return end;
}
} // namespace

QString review_words(const QString &message)
{
    const QString blank = QStringLiteral(" ");
    QString text = with_cr_lf(message);
    text.replace(QLatin1Char('['), QLatin1Char('x'));
    text.replace(QLatin1Char(']'), QLatin1Char('x'));
    text.replace(QStringLiteral("\r\n"), blank);
    return keep_addresses(text, blank, blank);
}

QString boxed_text(const QString &text)
{
    qsizetype end = std::min(end_of_lines(text), most_characters);
    if (end >= text.size())
        return text;
    if (text[end].isLowSurrogate())
        --end;
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    return text.left(end) +
           QStringLiteral("\n(%1 more characters)").arg(english.toString(text.size() - end));
}
