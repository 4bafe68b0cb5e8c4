#include "mail/delivery_fates.h"

#include "mail/recipient.h"

#include <QLocale>

#include <algorithm>

namespace
{
QString counted(qsizetype number)
{
    return QLocale(QLocale::English).toString(number);
}

// Recipients that met the same words, on one line; in the order in which the words came up.
struct SameWords
{
    QString words;
    QStringList recipients;
};

std::vector<SameWords> with_fate(const std::vector<RecipientFate> &fates, Fate fate)
{
    std::vector<SameWords> groups;
    for (const RecipientFate &each : fates) {
        if (each.fate != fate)
            continue;
        // Equal words come in rows: of one envelope, or of one server's answers without an address.
        if (groups.empty() || groups.back().words != each.words)
            groups.push_back({each.words, {}});
        groups.back().recipients += harmless_text(each.recipient);
    }
    return groups;
}

QString section(const std::vector<RecipientFate> &fates, Fate fate, const QString &title)
{
    QString lines;
    for (const SameWords &group : with_fate(fates, fate)) {
        lines += QStringLiteral("\n%1").arg(group.recipients.join(QStringLiteral(", ")));
        if (!group.words.isEmpty())
            lines += QStringLiteral(": %1").arg(harmless_text(group.words));
    }
    return lines.isEmpty() ? QString() : QStringLiteral("\n\n") + title + lines;
}
} // namespace

QString undelivered(const std::vector<RecipientFate> &fates)
{
    const auto accepted = std::ranges::count(fates, Fate::Accepted, &RecipientFate::fate);
    if (accepted == std::ssize(fates))
        return {};
    return QStringLiteral("The message was taken for %1 of %2 recipients.")
               .arg(counted(accepted), counted(std::ssize(fates))) +
           section(fates, Fate::Refused, QStringLiteral("Refused:")) +
           section(fates, Fate::NotNow, QStringLiteral("Refused for the moment:")) +
           section(fates, Fate::NotTried, QStringLiteral("Not sent to:")) +
           section(fates, Fate::Unknown,
                   QStringLiteral("Unknown whether they get it (the answer never came):"));
}
