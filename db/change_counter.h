#pragma once

#include <cstdint>

struct sqlite3;

/// How many transactions, whoever made them, the index of the file's write-ahead log has counted:
/// another number means another state of the file. Nothing is locked or read from the file, so that
/// it may be asked before every row. (SQLite's "WAL-mode File Format", section 2.1: the index's
/// header, field iChange.)
/// @return 0 for a connection without a write-ahead log.
std::uint32_t transactions_counted(sqlite3 *database);
