#pragma once

#include <cstddef>
#include <string>

struct Person
{
    std::string name; // UTF-8
    std::string address;
};

/// The made-up person with this number: every number has an address of its own, in ASCII, free of
/// quotes and of the wildcards of every `like`.
Person person(std::size_t number);

/// The highest number below `limit` of somebody called Weber: what the searches look for.
std::size_t last_weber_below(std::size_t limit);
