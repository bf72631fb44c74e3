#pragma once

#include <optional>
#include <string_view>

#include "security/pattern/character_set.h"

// The names in a character class, with the characters of the "C" locale: no letter beyond ASCII.
namespace Zq::Gantry::Security {

/// The class of [:name:], in any case: the twelve of POSIX and "d", "s", "w", which are \d, \s, \w.
std::optional<CharacterSet> FindCharacterClass(std::u16string_view name);

/// The character of [.name.]: a character itself, or POSIX' name of an ASCII one, such as "hyphen".
std::optional<char16_t> FindCollatingElement(std::u16string_view name);

}  // namespace Zq::Gantry::Security
