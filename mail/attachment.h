#pragma once

#include "mail/outgoing_message.h"

/// Reads the file that `path` means (native_path()).
/// @throws RuntimeError 32000, naming the path as it was given, when there is no such file, when it
/// is a folder or a device, cannot be read, or holds more than 256 MiB, which no mail server takes.
Attachment read_attachment(const QString &path);
