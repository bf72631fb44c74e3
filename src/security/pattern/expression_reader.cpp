#include "security/pattern/expression_reader.h"

#include <array>
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

/// The set of \d, \s or \w, or of \D, \S or \W.
CharacterSet SetOf(char16_t letter) {
  const bool isInverted = letter < u'a';
  const char16_t name = isInverted ? static_cast<char16_t>(letter + (u'a' - u'A')) : letter;
  const CharacterSet set = *FindCharacterClass(std::u16string_view(&name, 1));
  return isInverted ? set.Complement() : set;
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
  return !rest_.empty() && std::u16string_view(u"*+?{").find(rest_.front()) != rest_.npos;
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

std::optional<ExpressionReader::ClassPart> ExpressionReader::ReadCharacterEscape(char16_t letter) {
  const auto one = [](std::optional<char16_t> character) -> std::optional<ClassPart> {
    if (!character) return std::nullopt;
    return ClassPart{{}, character};
  };
  for (const ControlEscape& escape : kControlEscapes) {
    if (letter == escape.letter) return one(escape.character);
  }
  if (std::u16string_view(u"dDsSwW").find(letter) != std::u16string_view::npos) {
    return ClassPart{SetOf(letter), std::nullopt};
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
  std::optional<ClassPart> part = ReadCharacterEscape(Take());
  if (!part) return std::nullopt;
  if (part->character) part->set.Add(*part->character);
  return Escape{Escape::Kind::kCharacters, std::move(part->set), 0};
}

std::optional<ExpressionReader::ClassPart> ExpressionReader::ReadBracketedName(char16_t kind) {
  const std::size_t end = rest_.find(kind);
  if (end == rest_.npos) return std::nullopt;
  const std::u16string_view name = rest_.substr(0, end);
  rest_.remove_prefix(end + 1);
  if (!TryTake(u"]")) return std::nullopt;

  if (kind == u':') {
    std::optional<CharacterSet> set = FindCharacterClass(name);
    if (!set) return std::nullopt;
    return ClassPart{*std::move(set), std::nullopt};
  }
  const std::optional<char16_t> character = FindCollatingElement(name);
  if (!character) return std::nullopt;
  if (kind == u'.') return ClassPart{{}, character};
  // Characters are equivalent if they differ in case only.
  CharacterSet equivalent;
  equivalent.Add(*character);
  if (IsLetter(*character)) equivalent.Add(static_cast<char16_t>(*character ^ u' '));
  return ClassPart{std::move(equivalent), std::nullopt};
}

std::optional<ExpressionReader::ClassPart> ExpressionReader::ReadClassPart() {
  for (const std::u16string_view opening : {u"[.", u"[:", u"[="}) {
    if (TryTake(opening)) return ReadBracketedName(opening.back());
  }
  if (IsAtEnd()) return std::nullopt;
  const char16_t character = Take();
  if (character != u'\\') return ClassPart{{}, character};
  if (IsAtEnd()) return std::nullopt;
  if (TryTake(u"b")) return ClassPart{{}, u'\b'};
  if (TryTake(u"B")) return std::nullopt;
  return ReadCharacterEscape(Take());
}

std::optional<CharacterSet> ExpressionReader::ReadClass() {
  const bool isInverted = TryTake(u"^");
  CharacterSet set;
  while (!TryTake(u"]")) {
    const std::optional<ClassPart> first = ReadClassPart();
    if (!first) return std::nullopt;
    set.Add(first->set);
    // A "-" before "]" is a character, and so is one without a part before it.
    const bool isRange = rest_.starts_with(u'-') && !rest_.starts_with(u"-]");
    if (!isRange) {
      if (first->character) set.Add(*first->character);
      continue;
    }
    Take();
    const std::optional<ClassPart> last = ReadClassPart();
    if (!last || !first->character || !last->character) return std::nullopt;
    if (*first->character > *last->character) return std::nullopt;
    set.Add(*first->character, *last->character);
  }
  return isInverted ? set.Complement() : set;
}

}  // namespace Zq::Gantry::Security
