#include "db/text_set.h"

#include "db/letter_case.h"

#include <QHash>

#include <cstring>

namespace
{
constexpr std::size_t first_slots = 1024;
}

TextSet::TextSet() : slots_(first_slots) {}

// The size in front keeps ("ab", "c") and ("a", "bc") apart.
void TextSet::add_field(std::string_view text, bool is_null)
{
    fold_text(text, folded_);
    const auto size = static_cast<std::uint32_t>(is_null ? ~std::uint32_t{0} : folded_.size());
    char bytes[sizeof size];
    std::memcpy(bytes, &size, sizeof size);
    row_.append(bytes, sizeof size);
    row_ += folded_;
}

bool TextSet::insert()
{
    // Seeded anew in every process, so that nobody can send texts that all fall into one slot.
    const auto hash =
        static_cast<std::uint32_t>(qHashBits(row_.data(), row_.size(), QHashSeed::globalSeed()));
    std::size_t index = hash & (slots_.size() - 1);
    for (; slots_[index].end != 0; index = (index + 1) & (slots_.size() - 1)) {
        if (holds(slots_[index], hash)) {
            row_.clear();
            return false;
        }
    }
    texts_ += row_;
    slots_[index] = {texts_.size(), static_cast<std::uint32_t>(row_.size()), hash};
    row_.clear();
    if (++used_ > slots_.size() / 2)
        grow();
    return true;
}

bool TextSet::holds(const Slot &slot, std::uint32_t hash) const
{
    return slot.hash == hash && slot.size == row_.size() &&
           std::memcmp(texts_.data() + slot.end - slot.size, row_.data(), row_.size()) == 0;
}

void TextSet::grow()
{
    std::vector<Slot> larger(slots_.size() * 2);
    for (const Slot &slot : slots_) {
        if (slot.end == 0)
            continue;
        std::size_t index = slot.hash & (larger.size() - 1);
        while (larger[index].end != 0)
            index = (index + 1) & (larger.size() - 1);
        larger[index] = slot;
    }
    slots_ = std::move(larger);
}
