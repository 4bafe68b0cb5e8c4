#pragma once

#include <QString>
#include <QStringView>

/// A character reference: what it stands for and how long it was.
struct HtmlEntity
{
    QString text;
    qsizetype length = 0; ///< 0: no reference, the "&" is text
};

/// Reads the reference at the text's first unit, an "&": "&amp;", "&#64;", "&#x40;", with or
/// without its semicolon. A reference that names no character is U+FFFD.
HtmlEntity html_entity(QStringView text);
