#pragma once

#include <cstddef>
#include <filesystem>

/// Writes messages 0 … count - 1 as a Maildir with all of them in cur/ but the last tenth, which is
/// in new/, as after some reading.
/// @throws std::runtime_error naming the file that cannot be written.
void write_maildir(const std::filesystem::path &folder, std::size_t count);

/// The same messages as one mbox (mboxrd: ">" before every "From " line, quoted ones included).
/// @throws std::runtime_error as above.
void write_mbox(const std::filesystem::path &file, std::size_t count);
