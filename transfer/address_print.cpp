#include "transfer/address_print.h"

#include "db/data_connection.h"
#include "platform/prompts.h"

#include <optional>

void print_addresses(DataConnection &rows, Prompts &prompts, const PrinterMaker &printer)
{
    rows.set_record_source("select * from email");
    rows.refresh();
    std::optional<LinePrinter> job;
    rows.record_set().walk({QStringLiteral("email")}, [&](const QStringList &fields) {
        if (!job)
            job.emplace(printer());
        job->print_line(fields.constFirst());
    });
    if (job)
        job->finish();
    prompts.notice(QStringLiteral("Finished!"));
}
