#include "transfer/address_export.h"

#include "db/data_connection.h"
#include "platform/drive_path.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "platform/text_file.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <optional>

namespace
{
QString canonical(const QString &path)
{
    return QFileInfo(native_path(path)).canonicalFilePath(); // empty when there is no such file
}

void write_rows(const ExportDesk &desk, std::optional<TextFileWriter> &file)
{
    RecordSet &rows = desk.rows.record_set();
    const qint64 count = rows.record_count();
    qint64 done = 0;
    rows.walk({QStringLiteral("email")}, [&](const QStringList &fields) {
        if (!file)
            throw RuntimeError(error_number::bad_file_name_or_number,
                               QStringLiteral("Bad file name or number: no file was chosen"));
        file->write(fields.constFirst() + QStringLiteral("\r\n"));
        desk.progress.tell(QStringLiteral("Address"), ++done, count);
    });
}
} // namespace

void refuse_own_database(const DataConnection &rows, const QString &path)
{
    const QString file = canonical(path);
    if (!file.isEmpty() && file == canonical(rows.database_name()))
        throw RuntimeError(error_number::permission_denied,
                           QStringLiteral("Permission denied: '%1' is the database").arg(path));
}

void export_addresses(const ExportDesk &desk, const QString &filter, const Statement &source)
{
    const QString path = desk.prompts.save_file({filter, QStringLiteral("c:\\Ostrix\\")});
    std::optional<TextFileWriter> file;
    if (!path.isEmpty()) {
        refuse_own_database(desk.rows, path);
        file.emplace(path);
    }
    desk.rows.set_record_source(source);
    desk.rows.refresh();
    const auto told = qScopeGuard([&desk] { desk.progress.clear(); });
    write_rows(desk, file);
    if (file)
        file->commit();
    desk.prompts.notice(QStringLiteral("Finished!"));
}
