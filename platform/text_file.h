#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <memory>

class QFile;
class QSaveFile;

/// Decodes a text file's bytes: a byte-order mark names the encoding (UTF-8, UTF-16, UTF-32), else
/// UTF-8, else Windows-1252, where the five bytes without a character keep their code. Nothing is
/// dropped.
QString decode_text(const QByteArray &bytes);

/// Decodes Windows-1252; the five bytes without a character keep their code.
QString decode_windows_1252(QByteArrayView bytes);

/// A text file that is open for reading, for commands that have something to do between opening
/// and reading.
class OpenTextFile
{
public:
    /// `path` may be in drive notation.
    /// @throws RuntimeError 52 for an empty path, 53 when there is no such file, 75 when it is a
    /// folder, a device, a pipe or larger than 1 GB, 70 when it may not be read.
    explicit OpenTextFile(const QString &path);
    ~OpenTextFile();

    /// Reads the file whole. @throws RuntimeError 57 when reading fails.
    QString read();

private:
    QString path_;
    std::unique_ptr<QFile> file_;
};

/// Reads a text file whole. `path` may be in drive notation.
/// @throws RuntimeError as OpenTextFile.
QString read_text_file(const QString &path);

/// Reads a text file as lines, ended by CR LF, LF or CR; a last line without an end counts.
/// @throws RuntimeError as read_text_file().
QStringList read_lines(const QString &path);

/// Splits text into lines as read_lines() does.
QStringList split_lines(const QString &text);

/// Replaces the file by `text` (UTF-8, written as it is): the new content is there whole or not at
/// all.
/// @throws RuntimeError 52 for an empty path, 76 when the folder is missing, 75 when it may not be
/// written, 70 when there is a database in its place, 61 when the disk is full.
void write_text_file(const QString &path, const QString &text);

/// A text file being written piece by piece, in UTF-8. Its new content is there, whole, when
/// commit() returns; a writer that goes before leaves what was there.
class TextFileWriter
{
public:
    /// @throws RuntimeError as write_text_file().
    explicit TextFileWriter(const QString &path);
    ~TextFileWriter();

    /// @throws RuntimeError 61 when the disk is full.
    void write(const QString &text);

    /// @throws RuntimeError as write_text_file(); the old content is there then.
    void commit();

private:
    QString path_;
    std::unique_ptr<QSaveFile> file_;
};

/// Appends `text` (UTF-8) to the file, which is made when absent.
/// @throws RuntimeError as write_text_file(); a part that was written before the failure is taken
/// back.
void append_text_file(const QString &path, const QString &text);
