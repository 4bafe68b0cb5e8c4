#include "bench/peers/aho_corasick.h"

namespace
{
unsigned char lower(unsigned char c)
{
    return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c;
}
} // namespace

AhoCorasick::AhoCorasick(const std::vector<std::string> &words)
{
    number_symbols(words);
    table_.resize(symbols_);
    is_end_.resize(1);
    for (const std::string &word : words)
        add(word);
    link();
}

void AhoCorasick::number_symbols(const std::vector<std::string> &words)
{
    for (const std::string &word : words) {
        for (const char c : word) {
            std::uint8_t &symbol = symbol_of_[lower(static_cast<unsigned char>(c))];
            if (symbol == 0)
                symbol = static_cast<std::uint8_t>(symbols_++);
        }
    }
    for (unsigned char c = 'A'; c <= 'Z'; ++c)
        symbol_of_[c] = symbol_of_[lower(c)];
}

void AhoCorasick::add(const std::string &word)
{
    std::uint32_t state = 0;
    for (const char c : word) {
        const std::uint8_t symbol = symbol_of_[static_cast<unsigned char>(c)];
        if (next(state, symbol) == 0) {
            next(state, symbol) = static_cast<std::uint32_t>(is_end_.size());
            is_end_.push_back(false);
            table_.resize(table_.size() + symbols_);
        }
        state = next(state, symbol);
    }
    is_end_[state] = true;
}

// Breadth first: the state that a state falls back to is complete before its own row is completed.
void AhoCorasick::link()
{
    std::vector<std::uint32_t> fallback(is_end_.size());
    std::vector<std::uint32_t> queue{0};
    for (std::size_t done = 0; done < queue.size(); ++done) {
        const std::uint32_t state = queue[done];
        for (std::size_t i = 0; i < symbols_; ++i) {
            const auto symbol = static_cast<std::uint8_t>(i);
            const std::uint32_t back = state == 0 ? 0 : next(fallback[state], symbol);
            std::uint32_t &target = next(state, symbol);
            if (target == 0) {
                target = back;
                continue;
            }
            fallback[target] = back;
            is_end_[target] = is_end_[target] || is_end_[back];
            queue.push_back(target);
        }
    }
}

bool AhoCorasick::matches(std::string_view text) const
{
    std::uint32_t state = 0;
    for (const char c : text) {
        state = table_[state * symbols_ + symbol_of_[static_cast<unsigned char>(c)]];
        if (is_end_[state])
            return true;
    }
    return is_end_[state];
}
