#pragma once

#include <QString>

#include <optional>

/// The address that a recipient's text means: a mailbox as RFC 5321 (4.1.2) writes it, alone or as
/// "Name <mailbox>". White space and line breaks at either end do not count. The local part may
/// hold letters beyond ASCII (RFC 6531); such letters in the domain become its ASCII form (RFC
/// 5890). Nothing else changes, letter case included.
/// @return nothing for blank text, which means nobody.
/// @throws RuntimeError 32000 for text that is no address, or holds a line break or another control
/// character; the description shows the text by harmless_text().
std::optional<QString> resolve_recipient(const QString &text);

/// Whether only a way out that takes letters beyond ASCII (SMTPUTF8, RFC 6531) can carry `address`.
bool needs_utf8(const QString &address);

/// The part of a resolved address behind its last "@".
QString domain_of(const QString &address);

/// Text of unknown origin for a person to read in a report: one line, in which control and format
/// characters stand as "\n", "\t", "\u202E", and which is cut at 300 characters.
QString harmless_text(const QString &text);
