#include "bench/inputs/encodings.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace
{
constexpr std::string_view base64_digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view hex_digits = "0123456789ABCDEF";
constexpr std::size_t line_bytes = 57; // 76 digits
constexpr std::size_t word_bytes = 45; // 60 digits: an encoded word has at most 75 characters
constexpr std::size_t line_limit = 75; // quoted-printable, without the soft break

std::uint32_t byte_at(std::string_view bytes, std::size_t position)
{
    return position < bytes.size() ? static_cast<unsigned char>(bytes[position]) : 0U;
}

std::string base64(std::string_view bytes)
{
    std::string digits;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::uint32_t group =
            byte_at(bytes, at) << 16 | byte_at(bytes, at + 1) << 8 | byte_at(bytes, at + 2);
        for (unsigned shift = 18, digit = 0; digit < 4; ++digit, shift -= 6)
            digits += at + digit > bytes.size() ? '=' : base64_digits[group >> shift & 63U];
    }
    return digits;
}

/// The end of the piece that starts at `from`: at most `limit` bytes, no UTF-8 character cut.
std::size_t piece_end(std::string_view text, std::size_t from, std::size_t limit)
{
    std::size_t end = std::min(from + limit, text.size());
    while (end < text.size() && (byte_at(text, end) & 0xC0U) == 0x80U)
        --end;
    return end;
}

std::string quoted(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    if (byte == '\n' || (byte >= ' ' && byte < 0x7F && byte != '='))
        return {c};
    return {'=', hex_digits[byte >> 4], hex_digits[byte & 15U]};
}
} // namespace

std::string base64_lines(std::string_view bytes)
{
    std::string lines;
    for (std::size_t from = 0; from < bytes.size(); from += line_bytes)
        lines += base64(bytes.substr(from, line_bytes)) + '\n';
    return lines;
}

std::string quoted_printable(std::string_view text)
{
    std::string lines;
    std::size_t column = 0;
    for (const char c : text) {
        const std::string piece = quoted(c);
        if (c != '\n' && column + piece.size() > line_limit) {
            lines += "=\n";
            column = 0;
        }
        lines += piece;
        column = c == '\n' ? 0 : column + piece.size();
    }
    return lines;
}

std::string encoded_words(std::string_view text)
{
    if (std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; }))
        return std::string(text);
    std::string words;
    for (std::size_t from = 0, end = 0; from < text.size(); from = end) {
        end = piece_end(text, from, word_bytes);
        words += (from == 0 ? "" : "\n ") + ("=?UTF-8?B?" + base64(text.substr(from, end - from)));
        words += "?=";
    }
    return words;
}
