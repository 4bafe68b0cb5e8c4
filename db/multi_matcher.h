#pragma once

#include <QStringList>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Tells whether a text contains any of many values, without regard to letter case
/// (letter_case.h), in one pass over the text (Aho-Corasick automaton).
class MultiMatcher
{
public:
    /// Takes the values from `first` on, as many as fit into bounded memory (16 MiB); always at
    /// least one.
    MultiMatcher(const QStringList &values, qsizetype first);

    /// The first value that was not taken.
    qsizetype end() const { return end_; }

    /// `text` is UTF-8. An empty value is contained in every text.
    bool matches(std::string_view text) const;

private:
    using State = std::int32_t;

    void name_bytes(const std::vector<std::string> &folded);
    void add(std::string_view value);
    void complete();
    State &target(State state, std::size_t byte_class)
    {
        return targets_[static_cast<std::size_t>(state) + byte_class];
    }
    bool run(std::string_view folded) const;

    qsizetype end_;
    bool matches_all_ = false;
    std::string long_value_; // a value too long for the automaton, which then stands alone
    std::array<std::uint8_t, 256> class_of_{}; // 0: a byte that no value holds
    std::size_t classes_ = 1;
    // states × classes; a state is the index of its row. The row of a byte's class holds the next
    // state, `found` when a value ends there.
    std::vector<State> targets_;
    mutable std::string folded_; // storage that is used again from text to text
};
