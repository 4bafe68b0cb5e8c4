#pragma once

#include "mail/mail_profile.h"
#include "tests/mail/servers/certificates.h"

#include <QProcess>
#include <QTemporaryDir>

/// An IMAP and POP3 server (Dovecot) on free ports of 127.0.0.1, over a Maildir in a folder of its
/// own, for user@example.org with the password: s3cret "word". Works for root and for other users.
class DovecotServer
{
public:
    /// @param certificate  which of the certificates it shows
    explicit DovecotServer(const Certificates &certificates, const QString &certificate = "good");
    ~DovecotServer();
    DovecotServer(const DovecotServer &) = delete;
    DovecotServer &operator=(const DovecotServer &) = delete;

    /// The Maildir; put messages there before the start.
    QString mail() const { return folder_.filePath("mail"); }
    /// Returns when the server answers; ends the test program when it does not.
    void start();

    MailServer imap(LineSecurity security = LineSecurity::Tls) const;
    MailServer pop3(LineSecurity security = LineSecurity::Tls) const;
    static Credentials credentials();
    /// How often somebody has signed on, and all that the server noted.
    QByteArray log() const;

private:
    void wait_for(quint16 port);
    [[noreturn]] void give_up();

    const Certificates &certificates_;
    QString certificate_;
    QTemporaryDir folder_{"/tmp/dovecot-XXXXXX"}; // short: the names of sockets are
    QProcess process_;
    quint16 imap_ = 0;
    quint16 imaps_ = 0;
    quint16 pop3_ = 0;
    quint16 pop3s_ = 0;
};
