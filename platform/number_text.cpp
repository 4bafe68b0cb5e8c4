#include "platform/number_text.h"

#include "platform/runtime_error.h"

#include <QLocale>

#include <cmath>

double number_of(const QString &text)
{
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    bool is_number = false;
    const double number = plain.toDouble(text.trimmed(), &is_number);
    if (!is_number || !std::isfinite(number))
        throw RuntimeError(error_number::type_mismatch,
                           QStringLiteral("Type mismatch: '%1' is not a number.").arg(text));
    return number;
}
