#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "security/pattern/character_set.h"

namespace Zq::Gantry::Security {

/// How often a term is repeated: {least,most}, or one of * + ?. Greedy unless `isLazy`.
struct Quantifier {
  static constexpr unsigned kUnlimited = 0xFFFFFFFF;

  unsigned least = 1;
  unsigned most = 1;
  bool isLazy = false;

  [[nodiscard]] bool IsOnce() const { return least == 1 && most == 1; }
};

/// What follows a backslash outside of a class.
struct Escape {
  enum class Kind { kCharacters, kReference, kWordBoundary, kNoWordBoundary };
  Kind kind = Kind::kCharacters;
  CharacterSet characters;  ///< of kCharacters
  std::size_t group = 0;    ///< of kReference, from 1
};

/// Reads the parts of an expression that are not groups, from front to back. An absent result means
/// that the expression is not valid; the reader's position is unspecified then. The text must
/// outlive the reader. Throws bad_alloc only.
class ExpressionReader {
 public:
  explicit ExpressionReader(std::u16string_view expression) : rest_(expression) {}

  [[nodiscard]] bool IsAtEnd() const { return rest_.empty(); }
  /// Takes the next character; only before the end.
  char16_t Take();
  /// Takes `token` if it comes next, and returns whether it did. An empty token always does.
  [[nodiscard]] bool TryTake(std::u16string_view token);
  /// Whether a quantifier comes next, valid or not.
  [[nodiscard]] bool IsAtQuantifier() const;

  /// Reads a quantifier; {1,1} if none comes next.
  [[nodiscard]] std::optional<Quantifier> ReadQuantifier();
  /// Reads an escape outside of a class, whose backslash has been taken.
  [[nodiscard]] std::optional<Escape> ReadEscape();
  /// Reads a class, whose "[" has been taken, up to and including "]".
  [[nodiscard]] std::optional<CharacterSet> ReadClass();

 private:
  /// A part of a class: one character, which may begin or end a range, or a set of characters,
  /// which has been added to the ranges.
  struct ClassPart {
    std::optional<char16_t> character;
  };
  using Ranges = std::vector<CharacterRange>;

  /// After "{", up to and including "}".
  [[nodiscard]] std::optional<Quantifier> ReadCounts();
  /// A decimal number up to 65,535.
  [[nodiscard]] std::optional<unsigned> ReadNumber();
  /// The character with this code, of exactly so many digits.
  [[nodiscard]] std::optional<char16_t> ReadHexadecimal(std::size_t digits);
  [[nodiscard]] std::optional<ClassPart> ReadClassPart(Ranges& ranges);
  /// After "[.", "[:" or "[=", whose second character is `kind`, up to and including "]".
  [[nodiscard]] std::optional<ClassPart> ReadBracketedName(char16_t kind, Ranges& ranges);
  /// The escapes that mean the same inside and outside of a class, after their first letter.
  [[nodiscard]] std::optional<ClassPart> ReadCharacterEscape(char16_t letter, Ranges& ranges);

  std::u16string_view rest_;
};

}  // namespace Zq::Gantry::Security
