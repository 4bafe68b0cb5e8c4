#include "transfer/grid_export.h"

#include "db/data_connection.h"
#include "platform/prompts.h"
#include "platform/text_file.h"
#include "transfer/csv_line.h"

void save_grid(DataConnection &rows, Prompts &prompts)
{
    const QString path =
        prompts.save_file({QStringLiteral("Comma Seperated Values files (*.CSV)|*.CSV"), {}});
    if (path.isEmpty())
        return;
    const QString line_end = QStringLiteral("\r\n");
    TextFileWriter file(path);
    if (rows.has_record_set()) {
        RecordSet &set = rows.record_set();
        const QStringList columns = set.columns();
        file.write(csv_line(columns));
        set.walk(columns,
                 [&](const QStringList &fields) { file.write(line_end + csv_line(fields)); });
    }
    file.write(line_end);
    file.commit();
}
