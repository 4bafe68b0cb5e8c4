#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <sys/stat.h>

/// More than mail servers let through; of a longer message only the first part is read.
constexpr qint64 longest_message = qint64(256) * 1024 * 1024;

/// A file or folder of a mailbox, open for reading only and so that its access time stays as it is
/// where the system allows that (to the file's owner).
class MailFile
{
public:
    MailFile() = default;
    /// Opens `path`; check is_open(), and error() when it is not.
    /// @param extra_flags  of open(2): O_NOFOLLOW, O_DIRECTORY …
    explicit MailFile(const QByteArray &path, int extra_flags = 0);
    ~MailFile();
    MailFile(MailFile &&other) noexcept;
    MailFile &operator=(MailFile &&other) noexcept;
    MailFile(const MailFile &) = delete;
    MailFile &operator=(const MailFile &) = delete;

    bool is_open() const { return descriptor_ >= 0; }
    /// The system's error number (errno) of the failed opening.
    int error() const { return error_; }
    int descriptor() const { return descriptor_; }
    /// Gives the descriptor away; the caller closes it.
    int release();

    /// The file's state.
    /// @throws RuntimeError 57 when the system cannot tell.
    struct stat status() const;

    /// Reads up to `size` bytes at `offset`; fewer only at the file's end.
    /// @throws RuntimeError 57 when reading fails.
    QByteArray read(qint64 offset, qint64 size) const;

private:
    int descriptor_ = -1;
    int error_ = 0;
    QByteArray path_;
};

/// Throws the RuntimeError for a system error: 53 no such file, 70 not allowed, else 57; the
/// description is `what`, the path and the system's words.
[[noreturn]] void throw_file_error(const char *what, const QByteArray &path, int error);

/// When a file was last changed.
QDateTime changed_at(const struct stat &status);
