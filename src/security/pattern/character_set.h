#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Zq::Gantry::Security {

struct CharacterRange {
  char16_t first = 0;
  char16_t last = 0;  ///< inclusive
};

/// A set of 16-bit characters: what a character class or "." matches.
class CharacterSet {
 public:
  void Add(char16_t character) { Add(character, character); }
  void Add(char16_t first, char16_t last) { ranges_.push_back({first, last}); }
  void Add(const CharacterSet& other);

  /// All other characters.
  CharacterSet Complement() const;

  /// The ranges in ascending order, neither touching nor overlapping.
  std::vector<CharacterRange> Ranges() const;

 private:
  std::vector<CharacterRange> ranges_;  ///< in the order of their addition
};

/// "\x{20AC}": the character as PCRE2 reads it anywhere, inside classes and outside.
std::u16string EscapedCharacter(char16_t character);

/// The set as a class of PCRE2, every character in hexadecimal. The inverted form is used where it
/// is shorter, which is where the set holds 0xFFFF.
std::u16string ClassText(const CharacterSet& set);

}  // namespace Zq::Gantry::Security
