#pragma once

#include "bench/inputs/random.h"

#include <cstddef>
#include <string>

/// Lines of about 70 characters, `size` bytes or a little more, with an address now and then.
/// ASCII, or with one letter in thirty from elsewhere (UTF-8).
std::string prose(Random &random, std::size_t size, bool ascii);

/// A subject of three to eight words.
std::string subject_line(Random &random, bool ascii);
