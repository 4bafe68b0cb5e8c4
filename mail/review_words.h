#pragma once

#include <QString>

/// The words of a message that hold "@", joined by single blanks, as the review window deletes by
/// them: every "[" and "]" is an "x", so that brackets become part of their word; line breaks part
/// words like blanks do, every other character stays.
QString review_words(const QString &message);
