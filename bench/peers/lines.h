#pragma once

#include <string>
#include <vector>

/// The lines of a file that are not empty, without their LF or CR LF.
/// @throws std::runtime_error when the file cannot be read.
std::vector<std::string> read_lines(const char *path);
