#pragma once

#include "mail/mail_profile.h"

#include <QByteArray>
#include <QList>
#include <QSslCertificate>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class QSslSocket;

/// What all network work shares.
struct NetworkConditions
{
    /// The longest silence of a server that any one step bears.
    std::chrono::milliseconds patience = std::chrono::seconds(60);
    /// Gives the windows a turn to paint while a step waits, several times a second; takes no input.
    std::function<void()> turn = [] {};
    /// Certificates trusted beside the system's own (a server that the user vouches for; tests).
    QList<QSslCertificate> also_trusted;
};

/// A line to a mail server, over TCP and TLS 1.2 or later. The certificate chain and the host name are
/// always verified. Blocks its caller; every wait ends after the conditions' patience.
/// Every failure is RuntimeError 32000 that names the server, the step and the reason.
class ServerConnection
{
public:
    /// @param server  its host, its security, and its port, which must not be 0 here.
    ServerConnection(MailServer server, NetworkConditions conditions);
    ~ServerConnection();

    /// Opens the line; with LineSecurity::Tls it is encrypted when this returns.
    void open();
    /// Encrypts the open line after the server's go-ahead to STARTTLS. What the server has sent beyond
    /// that go-ahead is an attack or a fault: it fails.
    void start_tls();
    bool is_encrypted() const;
    /// Whether a password may be sent: the line is encrypted, or the server is this machine.
    bool may_carry_secrets() const;

    void write(const QByteArray &bytes);
    /// The next line without its CR LF (or LF). @throws also when it is longer than `limit` bytes.
    QByteArray read_line(qsizetype limit = 64 * 1024);
    /// Exactly `count` bytes.
    QByteArray read_bytes(qsizetype count);
    void close();

    /// Bytes received so far, for measurements.
    qint64 received() const;

    /// Throws the failure of a step ("logging in") with the server's words, control characters taken
    /// out and cut to a readable length; never names a secret.
    [[noreturn]] void fail(const QString &step, const QString &words) const;

private:
    MailServer server_;
    NetworkConditions conditions_;
    std::unique_ptr<QSslSocket> socket_;
    qint64 received_ = 0;
};
