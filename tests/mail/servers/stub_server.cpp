#include "tests/mail/servers/stub_server.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>

#include <chrono>
#include <utility>

namespace
{
constexpr int longest_wait = 5'000; // milliseconds
constexpr int slice = 10;

// Hands the lines over as they come, for the script to encrypt or not.
class Listener : public QTcpServer
{
public:
    qintptr take() { return std::exchange(waiting_, -1); }

protected:
    void incomingConnection(qintptr descriptor) override { waiting_ = descriptor; }

private:
    qintptr waiting_ = -1;
};
} // namespace

StubLine::StubLine(QSslSocket &socket, const std::atomic<bool> &is_to_stop)
    : socket_(socket),
      is_to_stop_(is_to_stop)
{
}

bool StubLine::is_open() const
{
    return !is_to_stop_ && socket_.state() == QAbstractSocket::ConnectedState;
}

bool StubLine::is_encrypted() const
{
    return socket_.isEncrypted();
}

void StubLine::say(const QByteArray &bytes)
{
    socket_.write(bytes);
    while (is_open() && socket_.bytesToWrite() + socket_.encryptedBytesToWrite() > 0)
        socket_.waitForBytesWritten(slice);
}

QByteArray StubLine::hear()
{
    const QDeadlineTimer end(longest_wait);
    while (!socket_.canReadLine() && is_open() && !end.hasExpired())
        socket_.waitForReadyRead(slice);
    has_heard_ = socket_.canReadLine();
    QByteArray line = has_heard_ ? socket_.readLine() : QByteArray();
    line.chop(line.endsWith("\r\n") ? 2 : 0);
    if (has_heard_)
        heard_ += (is_encrypted() ? "[tls] " : "[clear] ") + line;
    return line;
}

QByteArray StubLine::answer(const QByteArray &answer)
{
    const QByteArray line = hear();
    if (has_heard_)
        say(QByteArray(answer).replace("TAG", line.split(' ').first()));
    return line;
}

bool StubLine::encrypt(const QString &certificate_file, const QString &key_file)
{
    QFile key(key_file);
    if (!key.open(QIODevice::ReadOnly))
        return false;
    socket_.setLocalCertificateChain(QSslCertificate::fromPath(certificate_file));
    socket_.setPrivateKey(QSslKey(key.readAll(), QSsl::Ec));
    socket_.startServerEncryption();
    const QDeadlineTimer end(longest_wait);
    while (!socket_.isEncrypted() && is_open() && !end.hasExpired())
        socket_.waitForEncrypted(slice);
    return socket_.isEncrypted();
}

void StubLine::stall()
{
    const QDeadlineTimer end(longest_wait);
    while (is_open() && !end.hasExpired()) {
        socket_.waitForReadyRead(slice);
        socket_.readAll();
    }
}

StubServer::StubServer(Script script) : script_(std::move(script)), thread_([this] { run(); })
{
    while (port_ == 0)
        std::this_thread::yield();
}

StubServer::~StubServer()
{
    is_to_stop_ = true;
    thread_.join();
}

QList<QByteArray> StubServer::heard() const
{
    const std::lock_guard lock(mutex_);
    return heard_;
}

void StubServer::run()
{
    Listener listener;
    listener.listen(QHostAddress::LocalHost);
    port_ = listener.serverPort();
    while (!is_to_stop_) {
        listener.waitForNewConnection(slice);
        const qintptr descriptor = listener.take();
        if (descriptor < 0)
            continue;
        ++lines_;
        QSslSocket socket;
        socket.setSocketDescriptor(descriptor);
        serve(socket);
    }
}

void StubServer::serve(QSslSocket &socket)
{
    StubLine line(socket, is_to_stop_);
    script_(line);
    {
        const std::lock_guard lock(mutex_);
        heard_ += line.heard();
    }
    socket.disconnectFromHost();
    if (socket.state() != QAbstractSocket::UnconnectedState)
        socket.waitForDisconnected(200);
}
