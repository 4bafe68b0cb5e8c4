#pragma once

#include <QList>
#include <QSslCertificate>
#include <QString>
#include <QTemporaryDir>

/// Certificates made for one test: an authority, what it vouches for ("good": localhost and
/// 127.0.0.1; "wrong": another host; "expired"), and what nobody vouches for ("self", "forged").
class Certificates
{
public:
    /// Ends the test program when they cannot be made.
    Certificates();

    /// What a client of the test trusts.
    QList<QSslCertificate> authority() const;
    QString certificate_file(const QString &name) const { return folder_.filePath(name + ".pem"); }
    QString key_file(const QString &name) const { return folder_.filePath(name + ".key"); }

private:
    QTemporaryDir folder_;
};
