#pragma once

#include <sys/types.h>

class QProcess;

/// Gives the process, which has not started yet, a group of its own, so that what it starts can be
/// ended with it.
void lead_group(QProcess &process);

/// Ends a process that leads a group, and what else is left of the group: asks first, and kills
/// after two seconds. Blocks until the process has ended.
/// @param group  the process's id when it started.
void end_group(QProcess &process, pid_t group);
