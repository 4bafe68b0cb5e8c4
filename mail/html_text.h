#pragma once

#include <QString>

/// The readable text of an HTML document: tags away, block tags and <br> as line breaks, runs of
/// white space as one blank (kept inside <pre>), entities decoded, scripts, styles and comments
/// dropped. The address of a mailto: link follows the link's text in angle brackets when that text
/// does not show it. Broken markup gives what can be read of it; a lone "<" is text. Costs one
/// pass, whatever the document holds.
QString html_to_text(const QString &html);
