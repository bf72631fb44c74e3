#pragma once

#include <cstddef>
#include <string>

#include "answers/answer.h"

namespace WattleafHost {

/// The default length of the longest bar, in characters.
inline constexpr std::size_t kLongestBarChars = 60;

/// One line for each entry: label, value, and a bar whose length is the value's share of the
/// largest one, in steps of half a character. A value above zero has at least the shortest bar.
[[nodiscard]] std::string BarChart(const Series& series,
                                   std::size_t longestBarChars = kLongestBarChars);

}  // namespace WattleafHost
