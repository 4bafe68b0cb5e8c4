#include "mail/review_words.h"

#include "platform/words.h"

QString review_words(const QString &message)
{
    const QString blank = QStringLiteral(" ");
    QString text = with_cr_lf(message);
    text.replace(QLatin1Char('['), QLatin1Char('x'));
    text.replace(QLatin1Char(']'), QLatin1Char('x'));
    text.replace(QStringLiteral("\r\n"), blank);
    return keep_addresses(text, blank, blank);
}
