#pragma once

#include <QString>

/// The number that a text box holds, with or without blanks around it ("3", " 1.5 ", "-2").
/// @throws RuntimeError 13, with the text, when it is no number; an empty text is none.
double number_of(const QString &text);
