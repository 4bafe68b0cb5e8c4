#pragma once

struct sqlite3;

/// How the failure of a bad pattern begins.
inline constexpr const char *invalid_pattern_words = "Invalid pattern string";

/// Gives a connection the dialect's `like` operator (like_pattern.h) in place of SQLite's own, and
/// the collation `letters` (dialect.h). A pattern is compiled once in a statement's run.
/// @throws RuntimeError when memory runs out.
void add_dialect_functions(sqlite3 *database);
