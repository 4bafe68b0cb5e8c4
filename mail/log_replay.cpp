#include "mail/log_replay.h"

#include "app/activity_log.h"
#include "app/please_wait.h"
#include "app/shared_controls.h"
#include "db/data_connection.h"
#include "platform/progress_report.h"
#include "platform/runtime_error.h"
#include "platform/skipped_steps.h"
#include "platform/text_box.h"
#include "platform/text_file.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QScopeGuard>
#include <QSet>

#include <algorithm>
#include <array>

namespace
{
// Lines that are mere text can be looked for together; so many that a person sees the progress.
constexpr qsizetype batch_size = 5000;

bool is_plain(const QString &line)
{
    return std::none_of(line.begin(), line.end(),
                        [](QChar c) { return QStringLiteral("*?#['").contains(c); });
}
} // namespace

void LogReplay::Command10_Click(SkippedSteps *skipped) const
{
    const QStringList lines = read_lines(ActivityLog::last_batch_log);
    desk_.please_wait.show();
    const auto done = qScopeGuard([this] {
        desk_.progress.clear();
        desk_.please_wait.unload();
    });
    QCoreApplication::processEvents();
    replay(lines, skipped);
    clear_fields();
}

void LogReplay::replay(const QStringList &lines, SkippedSteps *skipped) const
{
    QStringList plain;
    QSet<QString> executed; // lines with wildcards: each costs a look at every row, once is enough
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString &line = lines[i];
        if (is_plain(line)) {
            if (!line.isEmpty())
                plain.append(line);
            if (plain.size() < batch_size)
                continue;
        }
        delete_plain(plain, skipped);
        plain.clear();
        if (!is_plain(line) && !executed.contains(line)) {
            executed.insert(line);
            desk_.controls.Text27.set_text(line);
            delete_one_by_one(line, skipped);
        }
        desk_.progress.tell(QStringLiteral("Log line"), i + 1, lines.size());
    }
    delete_plain(plain, skipped);
    if (!lines.isEmpty())
        desk_.controls.Text27.set_text(lines.constLast());
}

void LogReplay::delete_plain(const QStringList &lines, SkippedSteps *skipped) const
{
    if (lines.isEmpty())
        return;
    const std::array<TableColumn, 3> targets = {
        {{QStringLiteral("system"), QStringLiteral("email")},
         {QStringLiteral("master"), QStringLiteral("email")},
         {QStringLiteral("system"), QStringLiteral("subject")}}};
    const bool deleted = attempt([&] { desk_.Data1.delete_containing(targets, lines); });
    if (deleted)
        return;
    // Nothing of the batch has happened: statement by statement, exactly those before the failing
    // one do.
    for (const QString &line : lines)
        delete_one_by_one(line, skipped);
}

void LogReplay::delete_one_by_one(const QString &line, SkippedSteps *skipped) const
{
    const std::array<Statement, 3> statements = {
        {{"delete * from system where email like '*", line, "*' "},
         {"delete * from master where email like '*", line, "*' "},
         {"delete * from system where subject like '*", line, "*' "}}};
    for (const Statement &statement : statements)
        run_step(skipped, [&] { desk_.Data1.execute(statement); });
}

void LogReplay::clear_fields() const
{
    const SharedControls &controls = desk_.controls;
    controls.Text23.clear();
    controls.Text1.clear();
    controls.Text2.clear();
    controls.Text7.clear();
    controls.RichTextBox1.set_text({});
}
