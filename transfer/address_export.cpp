#include "transfer/address_export.h"

#include "db/data_connection.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "platform/text_file.h"

#include <QScopeGuard>

#include <optional>

namespace
{
void write_rows(const ExportDesk &desk, std::optional<TextFileWriter> &file)
{
    const auto told = qScopeGuard([&desk] { desk.progress.clear(); });
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

void export_addresses(const ExportDesk &desk, const QString &filter, const Statement &source)
{
    const QString path = desk.prompts.save_file({filter, QStringLiteral("c:\\Ostrix\\")});
    std::optional<TextFileWriter> file;
    if (!path.isEmpty())
        file.emplace(path);
    desk.rows.set_record_source(source);
    desk.rows.refresh();
    write_rows(desk, file);
    if (file)
        file->commit();
    desk.prompts.notice(QStringLiteral("Finished!"));
}
