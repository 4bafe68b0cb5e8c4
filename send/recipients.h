#pragma once

#include <QStringList>

/// Cuts the text of an address box into recipients: the pieces between semicolons, each with its
/// blanks, an empty piece too; nothing after a semicolon at the very end.
QStringList split_recipients(const QString &text);
