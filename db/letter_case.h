#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// The one rule by which two letters count as the same: equal after simple case folding of Unicode
/// code points (CaseFolding.txt, statuses C and S), so that a character stays one character.
/// Comparing, `like`, `distinct`, sorting and deleting by value all use it.
char32_t fold_letter(char32_t letter);

/// fold_letter() for the bytes of ASCII text; other bytes stay.
inline constexpr std::array<unsigned char, 256> ascii_fold = [] {
    std::array<unsigned char, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte)
        table[byte] =
            static_cast<unsigned char>(byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte);
    return table;
}();

bool is_ascii(std::string_view text);

/// Reads the code point at `position` of UTF-8 text and moves past it; a byte that belongs to no
/// well-formed sequence is one U+FFFD.
char32_t next_code_point(std::string_view text, std::size_t &position);

void append_utf8(char32_t letter, std::string &text);

/// The text with every letter folded, as well-formed UTF-8. The result replaces `folded`, whose
/// storage is used again.
void fold_text(std::string_view text, std::string &folded);
