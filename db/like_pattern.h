#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A pattern of the `like` operator, compiled. The whole text must match, without regard to letter
/// case (letter_case.h):
///     *        any run of characters, also none
///     ?        one character (code point)
///     #        one digit, 0 to 9
///     [list]   one character of the list, which may hold ranges as a-z; [!list] one that is not in
///              it. `-` first or last, and any wildcard inside, stand for themselves; [] is nothing
///              at all and [!] an exclamation mark.
/// Time is linear in the text for patterns whose wildcards are all `*`; otherwise at most the
/// text's length times the pattern's.
class LikePattern
{
public:
    /// @throws RuntimeError 93 for a `[` that is not closed or a range that runs downwards.
    explicit LikePattern(std::string_view pattern);

    /// Both the pattern and the text are UTF-8.
    bool matches(std::string_view text) const;

private:
    struct CharacterList
    {
        bool negated = false;
        std::vector<std::pair<char32_t, char32_t>> ranges; // folded, ends included

        bool accepts(char32_t folded) const;
    };
    enum class Kind { Literal, AnyCharacter, Digit, List };
    struct Piece
    {
        Kind kind;
        std::string literal; // folded
        CharacterList list;
    };
    /// What stands between two stars.
    struct Segment
    {
        std::vector<Piece> pieces;
        std::size_t characters = 0;
    };

    void add_letter(char32_t letter);
    void add_list(std::string_view pattern, std::size_t &position);
    void prepare_plain_search();

    bool can_match_length(std::size_t bytes) const;
    bool search_plainly(std::string_view text) const;
    bool match_segments(std::string_view folded) const;

    std::vector<Segment> segments_;
    std::size_t characters_ = 0; // that a text must have at least
    // For *literal* with an ASCII literal: Horspool's search on the text as it stands.
    std::string plain_literal_;
    std::array<std::uint32_t, 256> skip_{};
    bool plain_ = false;
    bool letters_beyond_ascii_ = false; // k and s are also what U+212A and U+017F fold to
    mutable std::string folded_;        // storage that is used again from text to text
};
