#include "transfer/address_print.h"

#include "db/data_connection.h"
#include "platform/progress_report.h"
#include "platform/prompts.h"

#include <QScopeGuard>

#include <optional>

namespace
{
void print_rows(const ExportDesk &desk, const PrinterMaker &printer)
{
    const auto told = qScopeGuard([&desk] { desk.progress.clear(); });
    std::optional<LinePrinter> job;
    desk.rows.record_set().walk({QStringLiteral("email")}, [&](const QStringList &fields) {
        if (!job)
            job.emplace(printer());
        job->add_line(fields.constFirst());
    });
    if (job) {
        job->print([&desk](qint64 done, qint64 total) {
            desk.progress.tell(QStringLiteral("Address"), done, total);
        });
    }
}
} // namespace

void print_addresses(const ExportDesk &desk, const PrinterMaker &printer)
{
    desk.rows.set_record_source("select * from email");
    desk.rows.refresh();
    print_rows(desk, printer);
    desk.prompts.notice(QStringLiteral("Finished!"));
}
