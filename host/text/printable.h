#pragma once

#include <cstddef>
#include <string>

namespace WattleafHost {

/// The number of characters of a UTF-8 text.
[[nodiscard]] std::size_t CharacterCount(const std::string& utf8);

/// `utf8` on one line of a terminal: control characters become "?", and a text of more than `limit`
/// characters is cut to end in "...".
[[nodiscard]] std::string OneLine(const std::string& utf8, std::size_t limit);

/// `utf8` with blanks appended (PadRight) or put before it (PadLeft), up to `width` characters.
[[nodiscard]] std::string PadRight(std::string utf8, std::size_t width);
[[nodiscard]] std::string PadLeft(const std::string& utf8, std::size_t width);

/// `value` with two decimal places.
[[nodiscard]] std::string TwoDigits(double value);

}  // namespace WattleafHost
