#pragma once

#include <QString>

#include <ostream>

/// How a failed comparison shows a text.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
