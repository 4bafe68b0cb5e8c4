#include "tests/mail/servers/smtp_server.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include <cstdio>
#include <cstdlib>

namespace
{
QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TakenMessage taken_message(const QString &base)
{
    const QJsonObject envelope =
        QJsonDocument::fromJson(content(base + QStringLiteral(".json"))).object();
    return {envelope[QStringLiteral("from")].toString(),
            envelope[QStringLiteral("to")].toVariant().toStringList(),
            envelope[QStringLiteral("options")].toVariant().toStringList(),
            envelope[QStringLiteral("host")].toString(),
            envelope[QStringLiteral("signed_on")].toBool(),
            envelope[QStringLiteral("encrypted")].toBool(),
            content(base + QStringLiteral(".eml"))};
}
} // namespace

SmtpServer::SmtpServer(const QStringList &options)
{
    const QString script = QStringLiteral(OSTRIX_MAIL_SERVERS "/smtp_server.py");
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // The system's Python: the package belongs to it, not to others in PATH.
    process_.start(
        QStringLiteral("/usr/bin/python3"),
        QStringList{QStringLiteral("-W"), QStringLiteral("ignore"), script, folder_.path()} +
            options);
    while (process_.state() != QProcess::NotRunning && !process_.canReadLine())
        process_.waitForReadyRead();
    port_ = process_.readLine().trimmed().toUShort();
    if (port_ == 0) {
        std::fputs("The mail server for the test did not start\n", stderr);
        std::abort();
    }
}

SmtpServer::~SmtpServer()
{
    kill();
}

void SmtpServer::kill()
{
    process_.kill();
    process_.waitForFinished();
}

QList<TakenMessage> SmtpServer::taken() const
{
    QList<TakenMessage> messages;
    for (int number = 1; QFile::exists(folder_.filePath(QStringLiteral("%1.json").arg(number)));
         ++number)
        messages += taken_message(folder_.filePath(QString::number(number)));
    return messages;
}
