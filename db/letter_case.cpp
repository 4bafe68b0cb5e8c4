#include "db/letter_case.h"

#include <QChar>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace
{
constexpr char32_t replacement = 0xFFFD;

// Letters whose full folding is several characters and which fold to their small letter alone: the
// capital sharp s and the Greek capitals with iota below. The toolkit leaves these as they are.
bool folds_to_small_letter_only(char32_t letter)
{
    return letter == 0x1E9E || (letter >= 0x1F88 && letter <= 0x1FFC);
}

struct Sequence
{
    std::size_t length;
    char32_t lead_bits;
    char32_t least; // below it the sequence is overlong
};

Sequence sequence_of(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return {2, lead & 0x1FU, 0x80};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {3, lead & 0x0FU, 0x800};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {4, lead & 0x07U, 0x10000};
    return {0, 0, 0};
}

bool is_scalar(char32_t letter, char32_t least)
{
    return letter >= least && letter <= 0x10FFFF && (letter < 0xD800 || letter > 0xDFFF);
}
} // namespace

char32_t fold_letter(char32_t letter)
{
    if (letter < 0x80)
        return ascii_fold[letter];
    const char32_t folded = QChar::toCaseFolded(letter);
    if (folded == letter && folds_to_small_letter_only(letter))
        return QChar::toLower(letter);
    return folded;
}

bool is_ascii(std::string_view text)
{
    constexpr std::uint64_t high_bits = 0x8080808080808080U;
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, text.data() + i, 8);
        if ((eight & high_bits) != 0)
            return false;
    }
    return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char32_t next_code_point(std::string_view text, std::size_t &position)
{
    const auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80)
        return lead;
    const Sequence sequence = sequence_of(lead);
    if (sequence.length == 0 || position + sequence.length - 1 > text.size())
        return replacement;
    char32_t letter = sequence.lead_bits;
    for (std::size_t i = 0; i + 1 < sequence.length; ++i) {
        const auto next = static_cast<unsigned char>(text[position + i]);
        if ((next & 0xC0U) != 0x80)
            return replacement;
        letter = (letter << 6U) | (next & 0x3FU);
    }
    if (!is_scalar(letter, sequence.least))
        return replacement;
    position += sequence.length - 1;
    return letter;
}

void append_utf8(char32_t letter, std::string &text)
{
    const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (letter < 0x80) {
        add(letter);
        return;
    }
    if (letter < 0x800) {
        add(0xC0 | (letter >> 6U));
    } else {
        if (letter < 0x10000) {
            add(0xE0 | (letter >> 12U));
        } else {
            add(0xF0 | (letter >> 18U));
            add(0x80 | ((letter >> 12U) & 0x3FU));
        }
        add(0x80 | ((letter >> 6U) & 0x3FU));
    }
    add(0x80 | (letter & 0x3FU));
}

void fold_text(std::string_view text, std::string &folded)
{
    if (is_ascii(text)) {
        folded.resize(text.size());
        // Sums rather than the table: compilers turn these into steps of many bytes.
        std::transform(text.begin(), text.end(), folded.begin(), [](char c) {
            return static_cast<char>(c + (c >= 'A' && c <= 'Z' ? 'a' - 'A' : 0));
        });
        return;
    }
    folded.clear();
    for (std::size_t position = 0; position < text.size();)
        append_utf8(fold_letter(next_code_point(text, position)), folded);
}
