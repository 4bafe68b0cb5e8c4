#include "mail/process_group.h"

#include <QProcess>

#include <csignal>
#include <unistd.h>

void lead_group(QProcess &process)
{
    process.setChildProcessModifier([] { ::setpgid(0, 0); });
}

void end_group(QProcess &process, pid_t group)
{
    constexpr int grace = 2000; // milliseconds
    if (group <= 0)             // else the signals would go to this program's own group
        return;
    ::kill(-group, SIGTERM);
    if (!process.waitForFinished(grace)) {
        ::kill(-group, SIGKILL);
        process.kill();
        process.waitForFinished();
    }
    ::kill(-group, SIGKILL); // what outlived the process itself
}
