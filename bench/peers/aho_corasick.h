#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Many words looked for in one pass over a text (Aho and Corasick, 1975), without regard to the
/// case of ASCII letters. A complete table of transitions, one row a state.
class AhoCorasick
{
public:
    explicit AhoCorasick(const std::vector<std::string> &words);

    /// Whether any of the words occurs in the text.
    bool matches(std::string_view text) const;

private:
    std::uint32_t &next(std::uint32_t state, std::uint8_t symbol)
    {
        return table_[state * symbols_ + symbol];
    }
    void number_symbols(const std::vector<std::string> &words);
    void add(const std::string &word);
    void link();

    std::array<std::uint8_t, 256> symbol_of_{}; // 0: occurs in no word
    std::size_t symbols_ = 1;
    std::vector<std::uint32_t> table_;
    std::vector<bool> is_end_;
};
