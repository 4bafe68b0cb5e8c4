#include "mail/local_sender.h"

#include "mail/recipient.h"
#include "platform/runtime_error.h"

#include <QFile>
#include <QSysInfo>

#include <array>
#include <pwd.h>
#include <unistd.h>

namespace
{
QString user_name()
{
    passwd entry{};
    passwd *found = nullptr;
    std::array<char, 16'384> room{};
    if (getpwuid_r(geteuid(), &entry, room.data(), room.size(), &found) == 0 && found != nullptr)
        return QString::fromLocal8Bit(found->pw_name);
    return qEnvironmentVariable("USER", QStringLiteral("nobody"));
}

QString mail_name()
{
    constexpr qint64 longest_name = 255;
    QFile file(QStringLiteral("/etc/mailname"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readLine(longest_name + 2)).trimmed();
}

QString local_address()
{
    const QString user = user_name();
    for (const QString &host :
         {mail_name(), QSysInfo::machineHostName(), QStringLiteral("localhost")}) {
        QString address;
        if (attempt([&] { address = resolve_recipient(user + u'@' + host).value_or(QString()); }))
            return address;
    }
    throw RuntimeError(error_number::mail_failure,
                       QStringLiteral("The user \"%1\" has no local mail address to send from.")
                           .arg(harmless_text(user)));
}

QString named_address(const QString &text)
{
    QString address;
    attempt([&] { address = resolve_recipient(text).value_or(QString()); });
    if (address.isEmpty())
        throw RuntimeError(error_number::mail_failure,
                           QStringLiteral("The mail profile's sender address \"%1\" is none.")
                               .arg(harmless_text(text)));
    return address;
}
} // namespace

Mailbox sender_of(const MailProfile &profile)
{
    const QString &address = profile.sender_address;
    return {address.trimmed().isEmpty() ? local_address() : named_address(address),
            profile.sender_name};
}
