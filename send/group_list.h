#pragma once

#include <QString>

/// The file that a group with this name is kept in: a name that is a path of its own is taken as it
/// is, any other lies in `folder` (native or in drive notation).
QString group_file(const QString &folder, const QString &name);
