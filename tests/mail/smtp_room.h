#pragma once

#include "mail/smtp_way_out.h"
#include "platform/runtime_error.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

/// A message, and the way out that hands it to a server on this machine.
class Smtp : public testing::Test
{
protected:
    static inline const QByteArray message =
        "From: me@here.example\r\nSubject: x\r\n\r\n.\r\n..\r\n.a\r\nend\r\n";
    static inline const QString sender = QStringLiteral("me@here.example");

    static MailServer at(quint16 port, LineSecurity security = LineSecurity::Plain,
                         SignInKind sign_in = SignInKind::None)
    {
        MailServer server;
        server.host = QStringLiteral("localhost");
        server.port = port;
        server.security = security;
        server.sign_in = sign_in;
        server.user = QStringLiteral("ann");
        return server;
    }

    static QStringList many(int count)
    {
        QStringList recipients;
        for (int i = 0; i < count; ++i)
            recipients += QString("n%1@x.example").arg(i);
        return recipients;
    }

    std::vector<RecipientFate> send(const MailServer &server, const QStringList &recipients,
                                    const QByteArray &bytes = message, const QString &from = sender)
    {
        SmtpWayOut way(server, [this] { return credentials; }, {patience, [] {}, trusted});
        return way.hand_over(from, recipients, bytes);
    }
    // The failure's text without the port.
    QString failure(const MailServer &server, const QStringList &recipients = {"a@x.example"},
                    const QByteArray &bytes = message)
    {
        try {
            send(server, recipients, bytes);
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), 32000);
            return without_port(error.description(), server.port);
        }
        return "none";
    }
    static QString without_port(QString text, quint16 port)
    {
        return text.replace(QString::number(port), QStringLiteral("PORT"));
    }

    Credentials credentials{SignInKind::Password, "ann", "s3crét"};
    std::chrono::milliseconds patience = std::chrono::seconds(5);
    QList<QSslCertificate> trusted;
};
