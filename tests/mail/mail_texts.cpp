#include "tests/mail/mail_texts.h"

#include "mail/message_reader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

QByteArray mail(const QByteArray &header, const QByteArray &body)
{
    return header + "\n\n" + body;
}

MessageFields fields_of(const QByteArray &message)
{
    return read_message({message, {}, 0});
}

void put_file(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}
