#include "app/log_file.h"

#include "app/settings_store.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "platform/text_box.h"
#include "platform/text_file.h"

#include <QLineEdit>

namespace
{
QString shown_log(const QStringList &lines)
{
    QString shown;
    for (const QString &line : lines)
        shown += QStringLiteral("\r\n") + line;
    return shown;
}
} // namespace

LogFile::LogFile(QLineEdit &path_box, TextBox &log_box, SettingsStore &settings, Prompts &prompts)
    : Text17(path_box),
      Text27(log_box),
      settings_(settings),
      prompts_(prompts)
{
}

void LogFile::Command38_Click()
{
    Text27.clear();
    attempt([this] { Text27.set_text(shown_log(read_lines(Text17.text()))); });
}

void LogFile::Command39_Click()
{
    if (!prompts_.ok_cancel(
            QStringLiteral("This will permanently delete the log file contents. Are you sure?")))
        return;
    Text27.clear();
    write_text_file(Text17.text(), Text27.text());
    prompts_.notice(QStringLiteral("The log file contents have been permanently deleted"),
                    NoticeIcon::Exclamation);
}

void LogFile::Command40_Click()
{
    if (!prompts_.ok_cancel(
            QStringLiteral("This will change the path to the log file. Do you wish to proceed?")))
        return;
    const QString chosen = prompts_.open_file({});
    if (chosen.isEmpty()) {
        prompts_.notice(QStringLiteral("You must give the path to the log file."),
                        NoticeIcon::Exclamation);
        return;
    }
    Text17.setText(chosen);
    settings_.write(QStringLiteral("log file"), Text17.text());
    prompts_.notice(QStringLiteral("The log file path has been changed"), NoticeIcon::Information);
}
