#pragma once

#include <QStringList>

class Prompts;
class TextBox;

/// The address box after lines of a file were added to it: each line with a line break behind it,
/// then of all that stands between semicolons only the pieces with an "@", whole, joined by "; ".
QString with_address_lines(const QString &box_text, const QStringList &lines);

/// "Get File": lets a person choose a text file and adds its addresses to `box`. Nothing happens
/// when none is chosen.
/// @param folder  where the dialog starts, in drive notation; empty: where it was last.
/// @throws RuntimeError as read_lines().
void load_address_file(Prompts &prompts, const QString &folder, TextBox &box);

/// The filter of every dialog that asks for an address file.
inline constexpr char text_file_filter[] = "Text files (*.TXT)|*.TXT";

/// The folder that most of those dialogs start in.
inline constexpr char address_folder[] = "c:\\Ostrix\\";
