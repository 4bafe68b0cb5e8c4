#include "tests/transfer/transfer_room.h"

#include <QFile>

TransferRoom::TransferRoom()
{
    please_wait.set_parent(&parent);
    window.set_parent(&parent);
    show(Data2, "master");
}

void TransferRoom::write_file(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

QByteArray TransferRoom::content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void TransferRoom::tell(const QString &what, qint64 done, qint64 total)
{
    told.append(QString("%1 %2 of %3").arg(what).arg(done).arg(total));
}
