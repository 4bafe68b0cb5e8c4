#pragma once

#include <QString>

#include <map>
#include <memory>

class DatabaseFile;

/// The open database files. Connections to one file share it, by whatever path they name it, and so
/// see each other's writes and keep what they show.
class DatabaseEngine
{
public:
    /// Opens a file, or shares it when it is open. `path` may be in drive notation.
    /// @throws RuntimeError 3024 when there is no such file (none is ever made), 75, 70, 3343, as
    /// DatabaseFile.
    std::shared_ptr<DatabaseFile> open(const QString &path);

    /// Closes every file: only the database files are left, without their write-ahead logs. The
    /// connections then have no record set until their next refresh.
    void close_all();

private:
    std::map<QString, std::weak_ptr<DatabaseFile>> files_; // by canonical path
};
