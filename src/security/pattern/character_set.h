#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Sets of 16-bit characters: what a character class or "." of an expression matches, the names that
// a class may contain, and their form in an expression of PCRE2.
namespace Zq::Gantry::Security {

/// All characters from one to another; `first` is not above `last`.
struct CharacterRange {
  char16_t first = 0;
  char16_t last = 0;  ///< inclusive
};

/// A set of 16-bit characters. Surrogates and the null character are characters like others.
class CharacterSet {
 public:
  void Add(char16_t character) { Add(character, character); }
  /// All characters from `first` to `last`, which is not below it.
  void Add(char16_t first, char16_t last) { ranges_.push_back({first, last}); }
  void Add(const CharacterSet& other);

  /// All other characters.
  [[nodiscard]] CharacterSet Complement() const;

  /// The ranges in ascending order, neither touching nor overlapping.
  [[nodiscard]] std::vector<CharacterRange> Ranges() const;

 private:
  std::vector<CharacterRange> ranges_;  ///< in the order of their addition
};

/// The characters of [:name:], with `name` in any case: the twelve classes of POSIX in the "C"
/// locale, which has no letter beyond ASCII, and "d", "s", "w", which are \d, \s, \w. Absent if
/// there is no such class.
[[nodiscard]] std::optional<CharacterSet> FindCharacterClass(std::u16string_view name);

/// The character of [.name.]: a character itself, or the POSIX name of an ASCII one, such as
/// "hyphen", in its exact spelling. Absent for any other name.
[[nodiscard]] std::optional<char16_t> FindCollatingElement(std::u16string_view name);

/// "\x{20AC}": the character in the form that PCRE2 reads inside and outside of classes.
[[nodiscard]] std::u16string EscapedCharacter(char16_t character);

/// The set as a class of PCRE2, every character in hexadecimal. The inverted form is used if the
/// set holds 0xFFFF, since it is shorter then.
[[nodiscard]] std::u16string ClassText(const CharacterSet& set);

}  // namespace Zq::Gantry::Security
