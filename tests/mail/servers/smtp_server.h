#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A message that the server took.
struct TakenMessage
{
    QString sender;
    QStringList recipients;
    QStringList options; // of the MAIL command
    QString client;      // the name that the client gave itself
    bool is_signed_on = false;
    bool is_encrypted = false;
    QByteArray bytes;
};

/// A real mail server for a test (servers/smtp_server.py): user "ann", password "s3crét".
class SmtpServer
{
public:
    /// @param options  of the script. Ends the test program when it cannot be started.
    explicit SmtpServer(const QStringList &options = {});
    ~SmtpServer();

    quint16 port() const { return port_; }
    QList<TakenMessage> taken() const;
    /// Ends it at once.
    void kill();

private:
    QTemporaryDir folder_;
    QProcess process_;
    quint16 port_ = 0;
};
