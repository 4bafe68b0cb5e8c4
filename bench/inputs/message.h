#pragma once

#include <cstddef>
#include <ctime>
#include <string>

/// A made-up message: what its file holds (RFC 5322, lines ended by LF).
struct Message
{
    std::string sender;
    std::time_t date; // seconds since 1970
    std::string text;
};

/// The message with this number; the same for every inbox. Of many, 70 % are plain text in several
/// charsets and encodings, 20 % delivery-status notices that return a message, and 10 % are HTML,
/// both alternatives or carry an attachment. Their mean size is 8.3 kB.
Message make_message(std::size_t number);
