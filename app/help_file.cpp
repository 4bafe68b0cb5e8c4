#include "app/help_file.h"

#include "platform/drive_path.h"
#include "platform/runtime_error.h"
#include "platform/text_file.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

namespace
{
const QString launcher = QStringLiteral("C:\\ostrix\\help.bat");

QString embedded(const QString &name)
{
    QFile file(QStringLiteral(":/help/") + name);
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeError(error_number::file_not_found,
                           QStringLiteral("File not found: '%1'").arg(file.fileName()));
    return QString::fromUtf8(file.readAll());
}

void install(const QString &path, const QString &name)
{
    if (!QFileInfo::exists(native_path(path)))
        write_text_file(path, embedded(name));
}
} // namespace

void install_help()
{
    install(QStringLiteral("C:\\Ostrix\\Ostrix.hlp"), QStringLiteral("Ostrix.html"));
    install(QStringLiteral("C:\\Ostrix\\help.bat"), QStringLiteral("help.bat"));
}

void run_help_launcher()
{
    const QString file = native_path(launcher);
    QProcess shell;
    shell.setProgram(QStringLiteral("/bin/sh"));
    shell.setArguments({file});
    shell.setStandardInputFile(QProcess::nullDevice());
    shell.setStandardOutputFile(QProcess::nullDevice());
    shell.setStandardErrorFile(QProcess::nullDevice());
    if (!QFileInfo(file).isFile() || !shell.startDetached())
        throw RuntimeError(error_number::file_not_found,
                           QStringLiteral("File not found: '%1'").arg(launcher));
}
