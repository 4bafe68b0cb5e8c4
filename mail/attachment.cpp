#include "mail/attachment.h"

#include "mail/recipient.h"
#include "platform/drive_path.h"
#include "platform/runtime_error.h"

#include <QFile>
#include <QFileInfo>

namespace
{
constexpr qint64 largest = qint64(256) * 1024 * 1024;

[[noreturn]] void fail(const QString &path, const QString &why)
{
    throw RuntimeError(
        error_number::mail_failure,
        QStringLiteral("The attachment \"%1\" %2 Nothing was sent.").arg(harmless_text(path), why));
}

QString place_of(const QString &path)
{
    try {
        return native_path(path);
    } catch (const RuntimeError &error) {
        fail(path, QStringLiteral("cannot be found: %1.").arg(error.description()));
    }
}
} // namespace

Attachment read_attachment(const QString &path)
{
    const QFileInfo info(place_of(path));
    if (!info.exists())
        fail(path, QStringLiteral("is not there."));
    if (!info.isFile())
        fail(path, QStringLiteral("is not a file."));
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly))
        fail(path, QStringLiteral("cannot be read: %1.").arg(file.errorString()));
    QByteArray content = file.read(largest + 1);
    if (file.error() != QFileDevice::NoError)
        fail(path, QStringLiteral("cannot be read: %1.").arg(file.errorString()));
    if (content.size() > largest)
        fail(path, QStringLiteral("is larger than 256 MB, which no mail server takes."));
    return {path, info.fileName(), content};
}
