// Reads a server's inbox as a retrieval does, without the rest of it: signs on, lists, and takes
// the five fields of every message. Writes how many there were, and on request what that cost the
// line.
#include "mail/imap_inbox.h"
#include "mail/pop3_inbox.h"

#include <QCoreApplication>

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <string_view>

namespace
{
Credentials credentials()
{
    return {SignInKind::Password, "user@example.org", "s3cret \"word\""};
}

NetworkConditions conditions(const char *authority)
{
    NetworkConditions trusting;
    trusting.authorities = QSslCertificate::fromPath(QString::fromLocal8Bit(authority));
    return trusting;
}

// The row's text as the database holds it.
qint64 bytes_of(const MessageFields &fields)
{
    return (fields.address + fields.subject + fields.date + fields.name + fields.text)
        .toUtf8()
        .size();
}

template <typename ServerInbox>
void read_all(ServerInbox &inbox, const char *report)
{
    inbox.fetch();
    qint64 bytes = 0;
    for (int i = 0; i < inbox.count(); ++i)
        bytes += bytes_of(inbox.read(i));
    std::cout << inbox.count() << '\n';
    if (report != nullptr)
        std::ofstream(report) << "{\"received\": " << inbox.received() << ", \"rows\": " << bytes
                              << "}\n";
}
} // namespace

int main(int argc, char **argv)
try {
    if (argc < 4 || argc > 5) {
        std::cerr << "usage: bench_read_inbox imap|pop3 PORT AUTHORITY.pem [REPORT]\n";
        return 2;
    }
    const QCoreApplication application(argc, argv);
    MailServer server;
    server.host = QStringLiteral("localhost");
    server.port = static_cast<quint16>(std::atoi(argv[2]));
    const char *report = argc == 5 ? argv[4] : nullptr;
    if (argv[1] == std::string_view("imap")) {
        ImapInbox inbox(server, {}, &credentials, conditions(argv[3]));
        read_all(inbox, report);
    } else {
        Pop3Inbox inbox(server, &credentials, conditions(argv[3]));
        read_all(inbox, report);
    }
    return 0;
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
