#include "security/pattern/expression_reader.h"

#include <array>
#include <span>
#include <string_view>
#include <utility>

namespace Zq::Gantry::Security {

namespace {

/// The largest count that PCRE2 has.
constexpr unsigned kMostRepetitions = 65'535;

struct ControlEscape {
  char16_t letter;
  char16_t character;
};

constexpr std::array kControlEscapes = {
    ControlEscape{u'f', u'\f'}, ControlEscape{u'n', u'\n'}, ControlEscape{u'r', u'\r'},
    ControlEscape{u't', u'\t'}, ControlEscape{u'v', u'\v'},
};

bool IsDigit(char16_t character) { return character >= u'0' && character <= u'9'; }

bool IsLetter(char16_t character) {
  return (character >= u'A' && character <= u'Z') || (character >= u'a' && character <= u'z');
}

std::optional<unsigned> HexadecimalValue(char16_t digit) {
  if (IsDigit(digit)) return digit - u'0';
  if (digit >= u'A' && digit <= u'F') return digit - u'A' + 10;
  if (digit >= u'a' && digit <= u'f') return digit - u'a' + 10;
  return std::nullopt;
}

/// Adds the characters of \d, \s or \w, or of \D, \S or \W.
void AddEscapedClass(char16_t letter, std::vector<CharacterRange>& ranges) {
  const char16_t name = letter | (u'a' ^ u'A');
  const std::span<const CharacterRange> named = FindCharacterClass({&name, 1});
  if (letter == name) {
    ranges.insert(ranges.end(), named.begin(), named.end());
  } else {
    AppendOthers(named, ranges);
  }
}

}  // namespace

char16_t ExpressionReader::Take() {
  const char16_t character = rest_.front();
  rest_.remove_prefix(1);
  return character;
}

bool ExpressionReader::TryTake(std::u16string_view token) {
  if (!rest_.starts_with(token)) return false;
  rest_.remove_prefix(token.size());
  return true;
}

bool ExpressionReader::IsAtQuantifier() const {
  return !rest_.empty() &&
         std::u16string_view(u"*+?{").find(rest_.front()) != std::u16string_view::npos;
}

std::optional<unsigned> ExpressionReader::ReadNumber() {
  if (rest_.empty() || !IsDigit(rest_.front())) return std::nullopt;
  unsigned number = 0;
  while (!rest_.empty() && IsDigit(rest_.front())) {
    number = number * 10 + (Take() - u'0');
    if (number > kMostRepetitions) return std::nullopt;
  }
  return number;
}

std::optional<Quantifier> ExpressionReader::ReadCounts() {
  const std::optional<unsigned> least = ReadNumber();
  if (!least) return std::nullopt;
  Quantifier counts{*least, *least};
  if (TryTake(u",")) {
    if (TryTake(u"}")) return Quantifier{*least, Quantifier::kUnlimited};
    const std::optional<unsigned> most = ReadNumber();
    if (!most || *most < *least) return std::nullopt;
    counts.most = *most;
  }
  if (!TryTake(u"}")) return std::nullopt;
  return counts;
}

std::optional<Quantifier> ExpressionReader::ReadQuantifier() {
  if (!IsAtQuantifier()) return Quantifier{};
  std::optional<Quantifier> quantifier;
  switch (Take()) {
    case u'*':
      quantifier = Quantifier{0, Quantifier::kUnlimited};
      break;
    case u'+':
      quantifier = Quantifier{1, Quantifier::kUnlimited};
      break;
    case u'?':
      quantifier = Quantifier{0, 1};
      break;
    default:
      quantifier = ReadCounts();
  }
  if (quantifier) quantifier->isLazy = TryTake(u"?");
  return quantifier;
}

std::optional<char16_t> ExpressionReader::ReadHexadecimal(std::size_t digits) {
  if (rest_.size() < digits) return std::nullopt;
  unsigned code = 0;
  for (; digits > 0; --digits) {
    const std::optional<unsigned> value = HexadecimalValue(Take());
    if (!value) return std::nullopt;
    code = code * 16 + *value;
  }
  return static_cast<char16_t>(code);
}

std::optional<ExpressionReader::ClassPart> ExpressionReader::ReadCharacterEscape(char16_t letter,
                                                                                 Ranges& ranges) {
  const auto one = [](std::optional<char16_t> character) -> std::optional<ClassPart> {
    if (!character) return std::nullopt;
    return ClassPart{character};
  };
  for (const ControlEscape& escape : kControlEscapes) {
    if (letter == escape.letter) return one(escape.character);
  }
  if (std::u16string_view(u"dDsSwW").find(letter) != std::u16string_view::npos) {
    AddEscapedClass(letter, ranges);
    return ClassPart{};
  }
  if (letter == u'x') return one(ReadHexadecimal(2));
  if (letter == u'u') return one(ReadHexadecimal(4));
  if (letter == u'c') {
    if (rest_.empty() || !IsLetter(rest_.front())) return std::nullopt;
    return one(static_cast<char16_t>(Take() % 32));
  }
  if (IsDigit(letter)) {
    // Only \0, the null character: there are no octal numbers.
    const bool isNull = letter == u'0' && (rest_.empty() || !IsDigit(rest_.front()));
    return isNull ? one(u'\0') : std::nullopt;
  }
  // Any other character means itself, so that nothing reaches PCRE2 as an escape of its own.
  return one(letter);
}

std::optional<Escape> ExpressionReader::ReadEscape() {
  if (rest_.empty()) return std::nullopt;
  if (TryTake(u"b")) return Escape{Escape::Kind::kWordBoundary, {}, 0};
  if (TryTake(u"B")) return Escape{Escape::Kind::kNoWordBoundary, {}, 0};
  if (rest_.front() >= u'1' && rest_.front() <= u'9') {
    const std::optional<unsigned> group = ReadNumber();
    if (!group) return std::nullopt;
    return Escape{Escape::Kind::kReference, {}, *group};
  }
  Ranges ranges;
  const std::optional<ClassPart> part = ReadCharacterEscape(Take(), ranges);
  if (!part) return std::nullopt;
  if (part->character) ranges.push_back({*part->character, *part->character});
  return Escape{Escape::Kind::kCharacters, CharacterSet(std::move(ranges)), 0};
}

std::optional<ExpressionReader::ClassPart> ExpressionReader::ReadBracketedName(char16_t kind,
                                                                               Ranges& ranges) {
  const std::size_t end = rest_.find(kind);
  if (end == std::u16string_view::npos) return std::nullopt;
  const std::u16string_view name = rest_.substr(0, end);
  rest_.remove_prefix(end + 1);
  if (!TryTake(u"]")) return std::nullopt;

  if (kind == u':') {
    const std::span<const CharacterRange> named = FindCharacterClass(name);
    if (named.empty()) return std::nullopt;
    ranges.insert(ranges.end(), named.begin(), named.end());
    return ClassPart{};
  }
  const std::optional<char16_t> character = FindCollatingElement(name);
  if (!character) return std::nullopt;
  if (kind == u'.') return ClassPart{character};
  // Characters are equivalent if they differ in case only.
  ranges.push_back({*character, *character});
  if (IsLetter(*character)) {
    const auto otherCase = static_cast<char16_t>(*character ^ u' ');
    ranges.push_back({otherCase, otherCase});
  }
  return ClassPart{};
}

std::optional<ExpressionReader::ClassPart> ExpressionReader::ReadClassPart(Ranges& ranges) {
  if (IsAtEnd()) return std::nullopt;
  const char16_t character = Take();
  if (character == u'[') {
    for (const std::u16string_view kind : {u".", u":", u"="}) {
      if (TryTake(kind)) return ReadBracketedName(kind.front(), ranges);
    }
  }
  if (character != u'\\') return ClassPart{character};
  if (IsAtEnd()) return std::nullopt;
  if (TryTake(u"b")) return ClassPart{u'\b'};
  if (TryTake(u"B")) return std::nullopt;
  return ReadCharacterEscape(Take(), ranges);
}

std::optional<CharacterSet> ExpressionReader::ReadClass() {
  const bool isInverted = TryTake(u"^");
  Ranges ranges;
  ranges.reserve(8);  // enough for most classes
  while (!TryTake(u"]")) {
    const std::optional<ClassPart> first = ReadClassPart(ranges);
    if (!first) return std::nullopt;
    // A "-" before "]" is a character, and so is one without a part before it.
    const bool isRange = rest_.starts_with(u'-') && !rest_.starts_with(u"-]");
    if (!isRange) {
      if (first->character) ranges.push_back({*first->character, *first->character});
      continue;
    }
    Take();
    const std::optional<ClassPart> last = ReadClassPart(ranges);
    if (!last || !first->character || !last->character) return std::nullopt;
    if (*first->character > *last->character) return std::nullopt;
    ranges.push_back({*first->character, *last->character});
  }
  CharacterSet set(std::move(ranges));
  return isInverted ? set.Complement() : set;
}

}  // namespace Zq::Gantry::Security
