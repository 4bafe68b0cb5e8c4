#pragma once

#include <Qt>

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

/// Row numbers in the order of a column: numbers by value before text, text without regard to
/// letter case (letter_case.h), equal rows in the order given. `text_of` gives a row's field in
/// UTF-8; each row is asked for once, in the order given.
std::vector<std::int64_t> sorted_rows(const std::vector<std::int64_t> &rows,
                                      const std::function<std::string_view(std::int64_t)> &text_of,
                                      Qt::SortOrder order);
