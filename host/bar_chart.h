#pragma once

#include <cstddef>
#include <string>

#include "series.h"

namespace WattleafHost {

/// The longest bar, in characters, where nothing else is asked for.
inline constexpr std::size_t kLongestBarChars = 60;

/// One line for each entry: label, value, and a bar whose length is the value's share of the
/// largest one, in steps of half a character. A value above zero never shows as nothing.
std::string BarChart(const Series& series, std::size_t longestBarChars = kLongestBarChars);

}  // namespace WattleafHost
