// Sends one message to many over a mail server as "Send Mail" does, without the window: puts the
// message together, signs on, and keeps the fate of every recipient. Fails unless all were taken.
#include "mail/send_message.h"

#include <QCoreApplication>

#include <cstdlib>
#include <exception>
#include <iostream>

namespace
{
SendingAccount account(quint16 port)
{
    MailProfile profile;
    profile.sender_address = QStringLiteral("ann@example.org");
    profile.outgoing = OutgoingKind::Smtp;
    profile.outgoing_server.host = QStringLiteral("localhost");
    profile.outgoing_server.port = port;
    profile.outgoing_server.user = QStringLiteral("ann");
    return {profile, [] {
                return Credentials{SignInKind::Password, QStringLiteral("ann"),
                                   QStringLiteral("s3crét")};
            }};
}

ComposeBuffer message_to(int recipients)
{
    constexpr int to = 1;
    constexpr int blind_copy = 3;
    ComposeBuffer message;
    for (int i = 0; i < recipients; ++i) {
        message.set_RecipIndex(i);
        message.set_RecipType(i == 0 ? to : blind_copy);
        message.set_RecipAddress(QStringLiteral("n%1@example.org").arg(i));
        message.ResolveName();
    }
    message.set_MsgSubject(QStringLiteral("News"));
    message.set_MsgNoteText(
        QStringLiteral("A line of a letter, of which there are some more in it.\n").repeated(40));
    return message;
}
} // namespace

int main(int argc, char **argv)
try {
    if (argc != 4) {
        std::cerr << "usage: bench_send_message PORT AUTHORITY.pem RECIPIENTS\n";
        return 2;
    }
    const QCoreApplication application(argc, argv);
    SendingConditions conditions;
    conditions.network.authorities = QSslCertificate::fromPath(QString::fromLocal8Bit(argv[2]));
    send_message(message_to(std::atoi(argv[3])), account(static_cast<quint16>(std::atoi(argv[1]))),
                 conditions, nullptr);
    return 0;
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
