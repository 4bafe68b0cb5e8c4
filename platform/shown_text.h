#pragma once

#include <QString>

/// `text` as one line for a cell, a status bar or a list: line breaks, control characters and marks
/// that turn the direction of writing are blanks.
QString one_line(const QString &text);

/// `text` as a tool tip that shows it as it is, never as markup; its lines are kept. Empty for an
/// empty text.
QString plain_tool_tip(const QString &text);
