#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "security/pattern/character_set.h"

namespace Zq::Gantry::Security {

/// {least,most}, in numbers or as one of * + ?.
struct Quantifier {
  static constexpr unsigned kUnlimited = 0xFFFFFFFF;

  unsigned least = 1;
  unsigned most = 1;
  bool isLazy = false;

  bool IsOnce() const { return least == 1 && most == 1; }
};

/// What follows a backslash outside of a class.
struct Escape {
  enum class Kind { kCharacters, kReference, kWordBoundary, kNoWordBoundary };
  Kind kind = Kind::kCharacters;
  CharacterSet characters;
  std::size_t group = 0;
};

/// Reads the parts of an expression that are no groups. An empty result means
/// that the expression is not valid.
class ExpressionReader {
 public:
  explicit ExpressionReader(std::u16string_view expression) : rest_(expression) {}

  bool IsAtEnd() const { return rest_.empty(); }
  char16_t Take();
  bool TryTake(std::u16string_view token);
  bool IsAtQuantifier() const;

  /// One quantifier, or {1,1} where none stands.
  std::optional<Quantifier> ReadQuantifier();
  /// After a backslash.
  std::optional<Escape> ReadEscape();
  /// After "[", up to and including "]".
  std::optional<CharacterSet> ReadClass();

 private:
  /// A part of a class: a set, or one character, which may begin or end a range.
  struct ClassPart {
    CharacterSet set;
    std::optional<char16_t> character;
  };

  std::optional<Quantifier> ReadCounts();
  std::optional<unsigned> ReadNumber();
  std::optional<char16_t> ReadHexadecimal(std::size_t digits);
  std::optional<ClassPart> ReadClassPart();
  std::optional<ClassPart> ReadBracketedName(char16_t kind);
  std::optional<ClassPart> ReadCharacterEscape(char16_t letter);

  std::u16string_view rest_;
};

}  // namespace Zq::Gantry::Security
