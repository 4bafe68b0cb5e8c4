#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

/// Numbers that are the same on every machine for one seed. The engine is fixed by the language,
/// the standard library's distributions are not: ranges are cut here.
class Random
{
public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    /// 0 … limit - 1; `limit` must not be 0.
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(engine_() % limit); }

    /// `low` … `high`, both included.
    std::size_t between(std::size_t low, std::size_t high) { return low + below(high - low + 1); }

    template <typename T>
    const T &one_of(std::span<const T> choices)
    {
        return choices[below(choices.size())];
    }

private:
    std::mt19937_64 engine_;
};
