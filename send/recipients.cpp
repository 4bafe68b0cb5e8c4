#include "send/recipients.h"

QStringList split_recipients(const QString &text)
{
    QStringList recipients = text.split(QLatin1Char(';'));
    if (recipients.constLast().isEmpty())
        recipients.removeLast();
    return recipients;
}
