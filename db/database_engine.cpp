#include "db/database_engine.h"

#include "db/database_file.h"
#include "platform/drive_path.h"

#include <QFileInfo>

std::shared_ptr<DatabaseFile> DatabaseEngine::open(const QString &path)
{
    const QString native = native_path(path);
    const QString canonical = QFileInfo(native).canonicalFilePath(); // empty when there is none
    auto file = files_[canonical].lock();
    if (file == nullptr) {
        file = std::make_shared<DatabaseFile>(canonical.isEmpty() ? native : canonical, path);
        files_[canonical] = file;
    }
    return file;
}

void DatabaseEngine::close_all()
{
    for (const auto &[path, open_file] : files_) {
        if (const auto file = open_file.lock())
            file->close_readers();
    }
    files_.clear();
}
