#include "mail/mail_file.h"

#include "platform/runtime_error.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

MailFile::MailFile(const QByteArray &path, int extra_flags) : path_(path)
{
    // O_NONBLOCK: a pipe in a message's place must not stop the program.
    const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | extra_flags;
    descriptor_ = open(path.constData(), flags | O_NOATIME);
    if (descriptor_ < 0 && errno == EPERM)
        descriptor_ = open(path.constData(), flags);
    error_ = descriptor_ < 0 ? errno : 0;
}

MailFile::~MailFile()
{
    if (is_open())
        close(descriptor_);
}

MailFile::MailFile(MailFile &&other) noexcept
    : descriptor_(other.release()),
      error_(other.error_),
      path_(std::move(other.path_))
{
}

MailFile &MailFile::operator=(MailFile &&other) noexcept
{
    std::swap(descriptor_, other.descriptor_);
    std::swap(error_, other.error_);
    std::swap(path_, other.path_);
    return *this;
}

int MailFile::release()
{
    return std::exchange(descriptor_, -1);
}

struct stat MailFile::status() const
{
    struct stat status = {};
    if (fstat(descriptor_, &status) != 0)
        throw_file_error("The mail file's state cannot be read", path_, errno);
    return status;
}

QByteArray MailFile::read(qint64 offset, qint64 size) const
{
    QByteArray bytes(size, Qt::Uninitialized);
    qint64 done = 0;
    while (done < size) {
        const ssize_t got = pread(descriptor_, bytes.data() + done,
                                  static_cast<std::size_t>(size - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw_file_error("Reading the mail file failed", path_, errno);
        if (got == 0)
            break;
        done += got;
    }
    bytes.truncate(done);
    return bytes;
}

void throw_file_error(const char *what, const QByteArray &path, int error)
{
    const int number = error == ENOENT                     ? error_number::file_not_found
                       : error == EACCES || error == EPERM ? error_number::permission_denied
                                                           : error_number::device_io_error;
    throw RuntimeError(number, QStringLiteral("%1: '%2' (%3)")
                                   .arg(QLatin1String(what), QFile::decodeName(path),
                                        QString::fromLocal8Bit(std::strerror(error))));
}

QDateTime changed_at(const struct stat &status)
{
    return QDateTime::fromSecsSinceEpoch(status.st_mtim.tv_sec);
}
