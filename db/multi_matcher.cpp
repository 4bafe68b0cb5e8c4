#include "db/multi_matcher.h"

#include "db/letter_case.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr std::int32_t found = -1;
constexpr std::size_t max_cells = 4U << 20U; // of 4 bytes each

std::string folded_value(const QString &value)
{
    std::string folded;
    fold_text(value.toStdString(), folded);
    return folded;
}

/// How many different bytes the values taken so far hold, and how many in all.
class Size
{
public:
    void add(std::string_view value)
    {
        bytes_ += value.size();
        for (const char c : value) {
            bool &seen = seen_[static_cast<unsigned char>(c)];
            different_ += seen ? 0U : 1U;
            seen = true;
        }
    }
    bool fits() const { return (bytes_ + 1) * (different_ + 1) <= max_cells; }

private:
    std::array<bool, 256> seen_{};
    std::size_t different_ = 0;
    std::size_t bytes_ = 0;
};
} // namespace

MultiMatcher::MultiMatcher(const QStringList &values, qsizetype first) : end_(first)
{
    std::vector<std::string> taken;
    Size size;
    for (; end_ < values.size(); ++end_) {
        std::string value = folded_value(values[end_]);
        size.add(value);
        if (!size.fits() && !taken.empty())
            break;
        taken.push_back(std::move(value));
        if (!size.fits()) {
            ++end_;
            long_value_ = std::move(taken.front());
            return;
        }
    }
    name_bytes(taken);
    for (const std::string &value : taken)
        add(value);
    complete();
}

void MultiMatcher::name_bytes(const std::vector<std::string> &folded)
{
    for (const std::string &value : folded) {
        for (const char c : value) {
            std::uint8_t &name = class_of_[static_cast<unsigned char>(c)];
            if (name == 0)
                name = static_cast<std::uint8_t>(classes_++);
        }
    }
    // Folded ASCII only is looked up, so a capital can stand for its small letter: a text that is
    // all ASCII need not be folded first.
    for (std::size_t capital = 'A'; capital <= 'Z'; ++capital)
        class_of_[capital] = class_of_[ascii_fold[capital]];
    targets_.assign(classes_, 0);
}

void MultiMatcher::add(std::string_view value)
{
    if (value.empty())
        matches_all_ = true;
    State state = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const std::size_t byte_class = class_of_[static_cast<unsigned char>(value[i])];
        const State next = target(state, byte_class);
        if (next == found)
            return; // a shorter value ends here already
        if (i + 1 == value.size()) {
            target(state, byte_class) = found;
        } else if (next == 0) {
            const auto made = static_cast<State>(targets_.size());
            target(state, byte_class) = made;
            targets_.resize(targets_.size() + classes_, 0);
            state = made;
        } else {
            state = next;
        }
    }
}

// Breadth first: a state's missing targets are those of the state for its longest proper suffix,
// which is less deep and so complete already.
void MultiMatcher::complete()
{
    struct Entry
    {
        State state;
        State suffix;
    };
    std::vector<Entry> queue{{0, 0}};
    for (std::size_t i = 0; i < queue.size(); ++i) {
        const auto [state, suffix] = queue[i];
        for (std::size_t c = 0; c < classes_; ++c) {
            State &next = target(state, c);
            const State by_suffix = state == 0 ? 0 : target(suffix, c);
            if (by_suffix == found)
                next = found;
            else if (next > 0)
                queue.push_back({next, by_suffix});
            else if (next == 0)
                next = by_suffix;
        }
    }
}

bool MultiMatcher::matches(std::string_view text) const
{
    if (matches_all_)
        return true;
    if (long_value_.empty() && is_ascii(text))
        return run(text);
    fold_text(text, folded_);
    if (!long_value_.empty())
        return memmem(folded_.data(), folded_.size(), long_value_.data(), long_value_.size()) !=
               nullptr;
    return run(folded_);
}

bool MultiMatcher::run(std::string_view folded) const
{
    State state = 0;
    for (const char c : folded) {
        state =
            targets_[static_cast<std::size_t>(state) + class_of_[static_cast<unsigned char>(c)]];
        if (state == found)
            return true;
    }
    return false;
}
