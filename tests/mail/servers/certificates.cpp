#include "tests/mail/servers/certificates.h"

#include <QProcess>

#include <cstdio>
#include <cstdlib>

Certificates::Certificates()
{
    QProcess maker;
    maker.setProcessChannelMode(QProcess::MergedChannels);
    maker.start(QStringLiteral(OSTRIX_MAIL_SERVERS "/make_certificates.sh"), {folder_.path()});
    if (maker.waitForFinished() && maker.exitCode() == 0)
        return;
    std::fputs(maker.readAll().constData(), stderr);
    std::abort();
}

QList<QSslCertificate> Certificates::authority() const
{
    return QSslCertificate::fromPath(certificate_file(QStringLiteral("ca")));
}
