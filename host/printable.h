#pragma once

#include <cstddef>
#include <string>

namespace WattleafHost {

/// The number of characters of a UTF-8 text.
std::size_t CharacterCount(const std::string& utf8);

/// `utf8` on one line of a terminal: control characters become "?", and what is longer than `limit`
/// characters ends in "...".
std::string OneLine(const std::string& utf8, std::size_t limit);

/// `utf8` filled up with blanks to `width` characters, behind it or before it.
std::string PadRight(std::string utf8, std::size_t width);
std::string PadLeft(const std::string& utf8, std::size_t width);

/// Two digits behind the point.
std::string TwoDigits(double value);

}  // namespace WattleafHost
