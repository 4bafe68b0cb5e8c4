#include "db/row_sort.h"

#include "db/letter_case.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>

namespace
{
struct NumberRow
{
    double value;
    std::size_t index;
};

struct TextRow
{
    std::uint64_t start; // the first eight bytes, which mostly decide
    std::size_t offset;  // in the folded texts
    std::uint32_t size;
    std::size_t index;
};

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::optional<double> number_in(std::string_view text)
{
    text = trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() ||
        !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::uint64_t first_bytes(std::string_view text)
{
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < sizeof bytes; ++i)
        bytes = (bytes << 8U) | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    return bytes;
}

class Sorter
{
public:
    void add(std::string_view text)
    {
        const std::size_t index = count_++;
        if (const auto number = number_in(text)) {
            numbers_.push_back({*number, index});
            return;
        }
        fold_text(text, folded_);
        texts_.push_back({first_bytes(folded_), bytes_.size(),
                          static_cast<std::uint32_t>(folded_.size()), index});
        bytes_ += folded_;
    }

    /// The indices of what was added, in order.
    std::vector<std::size_t> sorted(Qt::SortOrder order)
    {
        const bool up = order == Qt::AscendingOrder;
        sort(numbers_, up, [](const NumberRow &a, const NumberRow &b) {
            return a.value < b.value ? -1 : a.value > b.value ? 1 : 0;
        });
        sort(texts_, up, [this](const TextRow &a, const TextRow &b) { return compare(a, b); });
        std::vector<std::size_t> indices;
        indices.reserve(count_);
        const auto append = [&indices](const auto &rows) {
            for (const auto &row : rows)
                indices.push_back(row.index);
        };
        if (up)
            append(numbers_);
        append(texts_);
        if (!up)
            append(numbers_);
        return indices;
    }

private:
    template <typename Rows, typename Compare>
    static void sort(Rows &rows, bool up, Compare compare_rows)
    {
        std::sort(rows.begin(), rows.end(), [&](const auto &a, const auto &b) {
            const int order = compare_rows(a, b);
            return order == 0 ? a.index < b.index : (order < 0) == up;
        });
    }

    int compare(const TextRow &a, const TextRow &b) const
    {
        if (a.start != b.start)
            return a.start < b.start ? -1 : 1;
        return text(a).compare(text(b));
    }

    std::string_view text(const TextRow &row) const
    {
        return std::string_view(bytes_).substr(row.offset, row.size);
    }

    std::size_t count_ = 0;
    std::vector<NumberRow> numbers_;
    std::vector<TextRow> texts_;
    std::string bytes_;
    std::string folded_;
};
} // namespace

std::vector<std::int64_t> sorted_rows(const std::vector<std::int64_t> &rows,
                                      const std::function<std::string_view(std::int64_t)> &text_of,
                                      Qt::SortOrder order)
{
    Sorter sorter;
    for (const std::int64_t row : rows)
        sorter.add(text_of(row));
    std::vector<std::int64_t> result;
    result.reserve(rows.size());
    for (const std::size_t index : sorter.sorted(order))
        result.push_back(rows[index]);
    return result;
}
