#pragma once

#include <QByteArray>

/// Makes a message safe to hand to the MIME parser, in place:
/// - colons after the 200th in an address field, anywhere in the message, become blanks (the parser
///   treats each as the start of a group inside a group and overflows the stack);
/// - the message ends at the 200,000th line that could begin a field or a part, because each costs
///   the parser an object.
/// @return how many of its bytes remain for the parser; the rest is to be told to the reader.
qsizetype guard_for_parser(QByteArray &message);
