#pragma once

#include <optional>
#include <span>
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
  CharacterSet() = default;
  /// The characters of all ranges, which may be in any order, touch and overlap.
  explicit CharacterSet(std::vector<CharacterRange> ranges);

  /// All other characters.
  [[nodiscard]] CharacterSet Complement() const;

  /// The ranges in ascending order, neither touching nor overlapping.
  [[nodiscard]] std::span<const CharacterRange> Ranges() const { return ranges_; }

 private:
  std::vector<CharacterRange> ranges_;
};

/// The characters of [:name:] as the ranges of a set, with `name` in any case: the twelve classes
/// of POSIX in the "C" locale, which has no letter beyond ASCII, and "d", "s", "w", which are \d,
/// \s, \w. Empty if there is no such class.
[[nodiscard]] std::span<const CharacterRange> FindCharacterClass(std::u16string_view name);

/// Appends all characters that `ranges`, those of a set, do not contain.
void AppendOthers(std::span<const CharacterRange> ranges, std::vector<CharacterRange>& others);

/// The character of [.name.]: a character itself, or the POSIX name of an ASCII one, such as
/// "hyphen", in its exact spelling. Absent for any other name.
[[nodiscard]] std::optional<char16_t> FindCollatingElement(std::u16string_view name);

/// Appends "\x{20AC}": the character in the form that PCRE2 reads inside and outside of classes.
void AppendCharacter(char16_t character, std::u16string& text);

/// Appends the set as a class of PCRE2, every character in hexadecimal. The inverted form is used
/// if the set holds 0xFFFF, since it is shorter then.
void AppendClass(const CharacterSet& set, std::u16string& text);

}  // namespace Zq::Gantry::Security
