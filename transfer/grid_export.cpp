#include "transfer/grid_export.h"

#include "db/data_connection.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"
#include "platform/text_file.h"
#include "transfer/csv_line.h"

#include <QScopeGuard>

namespace
{
const QString line_end = QStringLiteral("\r\n");

void write_grid(const ExportDesk &desk, TextFileWriter &file)
{
    const auto told = qScopeGuard([&desk] { desk.progress.clear(); });
    RecordSet &rows = desk.rows.record_set();
    const QStringList columns = rows.columns();
    const qint64 count = rows.record_count();
    qint64 done = 0;
    file.write(csv_line(columns));
    rows.walk(columns, [&](const QStringList &fields) {
        file.write(line_end + csv_line(fields));
        desk.progress.tell(QStringLiteral("Row"), ++done, count);
    });
}
} // namespace

void save_grid(const ExportDesk &desk)
{
    const QString path =
        desk.prompts.save_file({QStringLiteral("Comma Seperated Values files (*.CSV)|*.CSV"), {}});
    if (path.isEmpty())
        return;
    TextFileWriter file(path);
    if (desk.rows.has_record_set())
        write_grid(desk, file);
    file.write(line_end);
    file.commit();
}
