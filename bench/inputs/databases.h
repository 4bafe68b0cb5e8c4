#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

/// How much there is to replay.
struct ReplaySize
{
    std::size_t master_rows;
    std::size_t work_rows;
    std::size_t log_lines;
};

/// A database file as the program makes it: the five tables, empty.
void write_empty_database(const std::filesystem::path &file);

/// The work table with 1.9 kB of text a row, and the master list.
void write_replay_database(const std::filesystem::path &file, const ReplaySize &size);

/// The last-batch log for that database: a time stamp, addresses of which some are in the tables
/// (0.8 rows of the master list and 0.14 of the work table a line), and a few subjects.
void write_log(const std::filesystem::path &file, const ReplaySize &size);

/// The same log as the statements that it stands for, three a line, in the sqlite3 shell's dialect.
void write_statements(const std::filesystem::path &file, const ReplaySize &size);

/// A text file with `count` addresses, one a line, and a last line more.
void write_address_file(const std::filesystem::path &file, std::size_t count);

/// A master list with `rows` rows of which one in eight repeats an address, half of these in
/// another letter case.
void write_list_database(const std::filesystem::path &file, std::size_t rows);
