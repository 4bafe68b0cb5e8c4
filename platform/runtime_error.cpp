#include "platform/runtime_error.h"

#include <limits>

RuntimeError::RuntimeError(int number, const QString &description)
    : number_(number),
      description_(description),
      what_(report().toUtf8())
{
}

QString RuntimeError::report() const
{
    return QStringLiteral("Run-time error '%1':\n\n").arg(number_) + description_;
}

int as_integer16(qint64 count)
{
    if (count > std::numeric_limits<qint16>::max())
        throw RuntimeError(
            error_number::overflow,
            QStringLiteral("Overflow: %1 is more than a 16-bit number holds").arg(count));
    return static_cast<int>(count);
}
