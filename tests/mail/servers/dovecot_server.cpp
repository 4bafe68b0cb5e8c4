#include "tests/mail/servers/dovecot_server.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/prctl.h>
#include <thread>
#include <unistd.h>

namespace
{
// Nobody can keep a port for a program that is yet to start; between here and there another may
// take it.
quint16 free_port()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

MailServer server_at(quint16 port, LineSecurity security)
{
    MailServer server;
    server.host = QStringLiteral("localhost");
    server.port = port;
    server.security = security;
    server.user = DovecotServer::credentials().user;
    return server;
}
} // namespace

DovecotServer::DovecotServer(const Certificates &certificates, const QString &certificate)
    : certificates_(certificates),
      certificate_(certificate)
{
    for (const char *part : {"cur", "new", "tmp"})
        QDir().mkpath(mail() + '/' + part);
}

DovecotServer::~DovecotServer()
{
    // It and its helpers are a group of their own; a polite end would take two seconds.
    if (process_.processId() > 0)
        kill(static_cast<pid_t>(-process_.processId()), SIGKILL);
    process_.waitForFinished();
}

void DovecotServer::start()
{
    imap_ = free_port();
    imaps_ = free_port();
    pop3_ = free_port();
    pop3s_ = free_port();
    QStringList arguments = {folder_.path(), QFileInfo(certificates_.key_file("ca")).path(),
                             certificate_};
    for (const quint16 port : {imap_, imaps_, pop3_, pop3s_})
        arguments += QString::number(port);
    process_.setChildProcessModifier([] {
        setsid();
        prctl(PR_SET_PDEATHSIG, SIGTERM); // a test that is killed leaves no server behind
    });
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start(QStringLiteral(OSTRIX_MAIL_SERVERS "/dovecot.sh"), arguments);
    wait_for(imap_);
    wait_for(pop3_);
}

void DovecotServer::wait_for(quint16 port)
{
    const QDeadlineTimer end(15'000);
    while (!end.hasExpired()) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        if (socket.waitForConnected(1'000) && socket.waitForReadyRead(5'000))
            return;
        if (process_.waitForFinished(1))
            give_up();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    give_up();
}

void DovecotServer::give_up()
{
    std::fprintf(stderr, "Dovecot does not start:\n%s%s\n", process_.readAll().constData(),
                 log().constData());
    std::abort();
}

QByteArray DovecotServer::log() const
{
    QFile file(folder_.filePath("dovecot.log"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

MailServer DovecotServer::imap(LineSecurity security) const
{
    return server_at(security == LineSecurity::Tls ? imaps_ : imap_, security);
}

MailServer DovecotServer::pop3(LineSecurity security) const
{
    return server_at(security == LineSecurity::Tls ? pop3s_ : pop3_, security);
}

Credentials DovecotServer::credentials()
{
    return {SignInKind::Password, "user@example.org", "s3cret \"word\""};
}
