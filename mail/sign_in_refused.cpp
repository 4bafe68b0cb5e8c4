#include "mail/sign_in_refused.h"

#include "mail/server_connection.h"

#include <QStringList>

#include <algorithm>

bool blames_credentials(const QString &words)
{
    // RFC 5530 section 3 (IMAP), RFC 2449 section 8.1 and RFC 3206 (POP3).
    static const QStringList other_reasons = {
        QStringLiteral("[UNAVAILABLE]"), QStringLiteral("[INUSE]"),
        QStringLiteral("[LIMIT]"),       QStringLiteral("[SERVERBUG]"),
        QStringLiteral("[IN-USE]"),      QStringLiteral("[SYS/TEMP]"),
        QStringLiteral("[SYS/PERM]"),    QStringLiteral("[LOGIN-DELAY]")};
    return std::ranges::none_of(other_reasons, [&words](const QString &code) {
        return words.startsWith(code, Qt::CaseInsensitive);
    });
}

void fail_sign_on(const ServerConnection &connection, const QString &words)
{
    if (blames_credentials(words))
        connection.fail_as<SignInRefused>(connection.step(), words);
    connection.fail(connection.step(), words);
}
