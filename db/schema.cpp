#include "db/schema.h"

#include "platform/drive_path.h"
#include "platform/runtime_error.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <SQLiteCpp/Database.h>

namespace
{
// Text compares without regard to letter case also in other programs that open the file. The
// columns stand in the order in which grids show them.
constexpr const char *tables = R"(
    pragma journal_mode = wal;
    begin;
    create table system (
        email text collate nocase, subject text collate nocase, date text collate nocase,
        name text collate nocase, text text collate nocase);
    create table master (
        email text collate nocase, name text collate nocase);
    create table email (
        email text collate nocase, subject text collate nocase, name text collate nocase,
        date text collate nocase, text text collate nocase, groups text collate nocase,
        groups2 text collate nocase);
    create table email2 (
        email text collate nocase, groups text collate nocase);
    create table import (
        email text collate nocase);
    commit)";

RuntimeError cannot_make(int number, const QString &path, const QString &reason)
{
    return {number, QStringLiteral("The database cannot be made: '%1' (%2)").arg(path, reason)};
}

// The connection is closed at the end: everything is in the one file then.
void fill(const QString &file, const QString &path)
{
    try {
        SQLite::Database database(file.toStdString(), SQLite::OPEN_READWRITE);
        database.exec(tables);
    } catch (const SQLite::Exception &error) {
        const int number =
            error.getErrorCode() == 13 ? error_number::disk_full : error_number::permission_denied;
        throw cannot_make(number, path, QString::fromUtf8(error.what()));
    }
}
} // namespace

void create_database(const QString &path)
{
    const QFileInfo target(native_path(path));
    if (target.exists())
        throw cannot_make(error_number::path_file_access, path,
                          QStringLiteral("there is a file of that name"));
    if (!QFileInfo(target.path()).isDir())
        throw cannot_make(error_number::path_not_found, path,
                          QStringLiteral("its folder is missing"));
    QTemporaryFile draft(target.path() + QStringLiteral("/.new-database-XXXXXX"));
    if (!draft.open())
        throw cannot_make(error_number::permission_denied, path, draft.errorString());
    fill(draft.fileName(), path);
    // Refuses to replace a file that has come into being meanwhile.
    if (!draft.rename(target.filePath()))
        throw cannot_make(error_number::permission_denied, path, draft.errorString());
    draft.setAutoRemove(false);
}
