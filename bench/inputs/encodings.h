#pragma once

#include <string>
#include <string_view>

/// Base64 in lines of 76 characters, each ended by LF.
std::string base64_lines(std::string_view bytes);

/// Quoted-printable text (RFC 2045) with soft line breaks; LF ends a line.
std::string quoted_printable(std::string_view text);

/// A header value as encoded words of UTF-8 (RFC 2047); plain ASCII is left as it is.
std::string encoded_words(std::string_view text);
