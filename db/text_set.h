#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A set of rows of texts, the same but for letter case counting as one (letter_case.h). Compact
/// and quick for millions of short rows: the texts lie one behind the other in one piece of memory.
class TextSet
{
public:
    TextSet();

    /// Adds a field to the row that the next insert() takes. A NULL is a value of its own.
    void add_field(std::string_view text, bool is_null);

    /// Takes the row. @return whether the set did not have it.
    bool insert();

private:
    struct Slot
    {
        std::uint64_t end = 0; // in texts_; 0: a free slot
        std::uint32_t size = 0;
        std::uint32_t hash = 0;
    };
    bool holds(const Slot &slot, std::uint32_t hash) const;
    void grow();

    std::string row_;
    std::string folded_;
    std::string texts_;
    std::vector<Slot> slots_; // as many as a power of two, half of them free at least
    std::size_t used_ = 0;
};
