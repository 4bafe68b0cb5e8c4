#include "platform/text_file.h"

#include "platform/drive_path.h"
#include "platform/runtime_error.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

#include <array>
#include <cstring>
#include <optional>

namespace
{
// The upper half of Windows-1252 that differs from Latin-1 (WHATWG encoding standard, index
// windows-1252).
constexpr std::array<char16_t, 32> windows_1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::optional<QString> decode_strictly(const QByteArray &bytes, QStringConverter::Encoding encoding)
{
    // Stateless: bytes that break off at the end are an error, too.
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

[[noreturn]] void fail(int number, const char *what, const QString &path,
                       const QString &reason = {})
{
    QString description = QStringLiteral("%1: '%2'").arg(QLatin1String(what), path);
    if (!reason.isEmpty())
        description += QStringLiteral(" (%1)").arg(reason);
    throw RuntimeError(number, description);
}

QString named_file(const QString &path)
{
    if (path.isEmpty())
        fail(error_number::bad_file_name_or_number, "Bad file name or number", path);
    return native_path(path);
}

[[noreturn]] void fail_to_write(const QFileDevice &file, const QString &path)
{
    if (!QFileInfo(QFileInfo(file.fileName()).path()).isDir())
        fail(error_number::path_not_found, "Path not found", path);
    if (QFileInfo(file.fileName()).isDir())
        fail(error_number::path_file_access, "This is a folder, not a file", path);
    const int number =
        file.error() == QFileDevice::ResourceError || file.error() == QFileDevice::WriteError
            ? error_number::disk_full
            : error_number::path_file_access;
    fail(number, "The file cannot be written", path, file.errorString());
}
constexpr qint64 largest_file = 1 << 30; // bytes; memory holds some times that

bool is_database(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) && file.read(15) == "SQLite format 3";
}

// A text in the place of a database, or of the log beside it that holds its last changes, is a list
// lost.
bool belongs_to_database(const QString &name)
{
    for (const char *ending : {"", "-wal", "-shm"}) {
        if (name.endsWith(QLatin1String(ending)) &&
            is_database(name.chopped(static_cast<qsizetype>(std::strlen(ending)))))
            return true;
    }
    return false;
}
} // namespace

QString decode_windows_1252(QByteArrayView bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar &c : text) {
        if (c.unicode() >= 0x80 && c.unicode() < 0xA0)
            c = QChar(windows_1252[c.unicode() - 0x80U]);
    }
    return text;
}

QString decode_text(const QByteArray &bytes)
{
    if (const auto marked = QStringConverter::encodingForData(bytes)) {
        if (const auto text = decode_strictly(bytes, *marked))
            return *text;
    } else if (const auto text = decode_strictly(bytes, QStringConverter::Utf8)) {
        return *text;
    }
    return decode_windows_1252(bytes);
}

OpenTextFile::OpenTextFile(const QString &path) : path_(path)
{
    const QString name = named_file(path);
    const QFileInfo info(name);
    if (!info.exists())
        fail(error_number::file_not_found, "File not found", path);
    if (info.isDir())
        fail(error_number::path_file_access, "This is a folder, not a file", path);
    if (!info.isFile()) // its end may never come
        fail(error_number::path_file_access, "This is a device or a pipe, not a file", path);
    if (info.size() > largest_file)
        fail(error_number::path_file_access, "The file is larger than 1 GB", path);
    file_ = std::make_unique<QFile>(name);
    if (!file_->open(QIODevice::ReadOnly))
        fail(error_number::permission_denied, "The file cannot be read", path,
             file_->errorString());
}

OpenTextFile::~OpenTextFile() = default;

QString OpenTextFile::read()
{
    const QByteArray bytes = file_->readAll();
    if (file_->error() != QFileDevice::NoError)
        fail(error_number::device_io_error, "Reading the file failed", path_, file_->errorString());
    return decode_text(bytes);
}

QString read_text_file(const QString &path)
{
    return OpenTextFile(path).read();
}

QStringList split_lines(const QString &text)
{
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != QLatin1Char('\n') && text[i] != QLatin1Char('\r'))
            continue;
        lines.append(text.mid(start, i - start));
        if (text[i] == QLatin1Char('\r') && i + 1 < text.size() && text[i + 1] == QLatin1Char('\n'))
            ++i;
        start = i + 1;
    }
    if (start < text.size())
        lines.append(text.mid(start));
    return lines;
}

QStringList read_lines(const QString &path)
{
    return split_lines(read_text_file(path));
}

void write_text_file(const QString &path, const QString &text)
{
    TextFileWriter file(path);
    file.write(text);
    file.commit();
}

TextFileWriter::TextFileWriter(const QString &path)
    : path_(path),
      file_(std::make_unique<QSaveFile>(named_file(path)))
{
    if (belongs_to_database(file_->fileName()))
        fail(error_number::permission_denied, "The file belongs to a database", path);
    if (!file_->open(QIODevice::WriteOnly))
        fail_to_write(*file_, path_);
}

TextFileWriter::~TextFileWriter() = default;

void TextFileWriter::write(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (file_->write(bytes) != bytes.size())
        fail_to_write(*file_, path_);
}

void TextFileWriter::commit()
{
    if (!file_->commit())
        fail_to_write(*file_, path_);
}

void append_text_file(const QString &path, const QString &text)
{
    QFile file(named_file(path));
    if (!file.open(QIODevice::Append))
        fail_to_write(file, path);
    const qint64 size_before = file.size();
    const QByteArray bytes = text.toUtf8();
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        file.resize(size_before);
        fail_to_write(file, path);
    }
}
