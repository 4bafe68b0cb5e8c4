#pragma once

#include <QString>

/// The name in `folder` that equals `component` but for letter case; the exact name if it is there,
/// `component` when there is none.
QString existing_name(const QString &folder, const QString &component);

/// The folder that "C:\" stands for: $XDG_DATA_HOME, else ~/.local/share. No trailing slash.
QString data_folder();

/// Whether a path is in the product's own notation: a letter, a colon and a slash of either kind.
bool has_drive_letter(const QString &path);

/// The file that a path means. A path with a drive letter is the product's own notation: "C:\" (in
/// any letter case) is data_folder(), and each component matches an existing name without regard to
/// letter case; components that do not exist are taken as written. Other paths are returned as they
/// are.
/// @throws RuntimeError 76 for a drive other than C.
QString native_path(const QString &path);
