#include "security/pattern/translation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>
#include <vector>

#include "security/pattern/expression_reader.h"

namespace Zq::Gantry::Security {

namespace {

/// Characters that a match may pass without a watch point; passing them takes some tenths of a
/// microsecond.
constexpr unsigned kLongestUnwatched = 64;

/// Alternatives that a group may have without a watch point.
constexpr std::size_t kMostUnwatchedAlternatives = 32;

constexpr std::u16string_view kStartOfText = u"\\A";
constexpr std::u16string_view kEndOfText = u"\\z";

void AppendNumber(std::size_t number, std::u16string& text) {
  std::array<char, 20> digits{};  // enough for 64 bits
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  for (const char* digit = digits.data(); digit != end; ++digit)
    text += static_cast<char16_t>(*digit);
}

void AppendQuantifier(const Quantifier& quantifier, std::u16string& text) {
  if (quantifier.IsOnce()) return;
  text += u'{';
  AppendNumber(quantifier.least, text);
  text += u',';
  if (quantifier.most != Quantifier::kUnlimited) AppendNumber(quantifier.most, text);
  text += quantifier.isLazy ? u"}?" : u"}";
}

/// As a callout of PCRE2, whose number is the watch point's.
std::u16string TextOf(WatchPoint point) {
  std::u16string text = u"(?C";
  AppendNumber(static_cast<std::size_t>(point), text);
  return text + u')';
}

/// The characters that "." matches: all but the line ends.
const CharacterSet& AnyOfALine() {
  static const CharacterSet set = [] {
    const CharacterSet lineEnds({{u'\n', u'\n'}, {u'\r', u'\r'}, {u'\u2028', u'\u2029'}});
    return lineEnds.Complement();
  }();
  return set;
}

std::size_t CountWideRanges(const CharacterSet& set) {
  return static_cast<std::size_t>(
      std::ranges::count_if(set.Ranges(), [](auto range) { return range.last > 0xFF; }));
}

/// One pass over an expression, term by term. A step returns false if the expression is not valid.
class Translator {
 public:
  explicit Translator(std::u16string_view expression) : reader_(expression) {
    // A character takes eight units, and the watch points of one repetition ten.
    result_.expression.reserve(8 * expression.size() + 16);
  }

  std::optional<Translation> Run() {
    OpenGroup(GroupKind::kPlain);  // the whole expression
    while (!reader_.IsAtEnd()) {
      if (!TranslateTerm(reader_.Take())) return std::nullopt;
    }
    if (openGroups_.size() > 1) return std::nullopt;
    CountAlternatives(openGroups_.back());
    return std::move(result_);
  }

 private:
  enum class GroupKind { kCapturing, kPlain, kLookAhead };
  struct Group {
    GroupKind kind;
    std::size_t number;  ///< of a capturing one
    std::size_t begin;   ///< place of its first alternative in the translation
    std::size_t alternatives = 1;
  };

  void OpenGroup(GroupKind kind);
  void CountAlternatives(const Group& group);
  bool TranslateTerm(char16_t character);
  bool TranslateEscape();
  bool TranslateSet(const std::optional<CharacterSet>& set);
  bool TranslateReference(std::size_t group);
  bool ReadGroupBegin();
  bool ReadGroupEnd();
  template <typename Append>
  bool AddCharacterItem(Append append);
  bool AddAssertion(std::u16string_view assertion);
  void AddWatchPoint(WatchPoint point);

  ExpressionReader reader_;
  Translation result_;
  std::vector<Group> openGroups_;
  std::vector<bool> isClosed_;  ///< of each capturing group
  unsigned unwatched_ = 0;      ///< characters that a match may pass since the last watch point
};

bool Translator::TranslateTerm(char16_t character) {
  switch (character) {
    case u'|':
      ++openGroups_.back().alternatives;
      result_.expression += character;
      return true;
    case u'^':
      return AddAssertion(kStartOfText);
    case u'$':
      return AddAssertion(kEndOfText);
    case u'.':
      return TranslateSet(AnyOfALine());
    case u'[':
      return TranslateSet(reader_.ReadClass());
    case u'\\':
      return TranslateEscape();
    case u'(':
      return ReadGroupBegin();
    case u')':
      return ReadGroupEnd();
    case u'*':
    case u'+':
    case u'?':
    case u'{':
      return false;  // nothing to repeat: each term has already read its one quantifier
    default:
      return AddCharacterItem([character](auto& text) { AppendCharacter(character, text); });
  }
}

bool Translator::TranslateEscape() {
  const std::optional<Escape> escape = reader_.ReadEscape();
  if (!escape) return false;
  switch (escape->kind) {
    case Escape::Kind::kWordBoundary:
      return AddAssertion(u"\\b");
    case Escape::Kind::kNoWordBoundary:
      return AddAssertion(u"\\B");
    case Escape::Kind::kReference:
      return TranslateReference(escape->group);
    case Escape::Kind::kCharacters:
      break;
  }
  return TranslateSet(escape->characters);
}

bool Translator::TranslateSet(const std::optional<CharacterSet>& set) {
  if (!set) return false;
  result_.mostWideRanges = std::max(result_.mostWideRanges, CountWideRanges(*set));
  return AddCharacterItem([&set](auto& text) { AppendClass(*set, text); });
}

/// A group must be closed before it is referred to, as in the standard libraries.
bool Translator::TranslateReference(std::size_t group) {
  if (group > isClosed_.size() || !isClosed_[group - 1]) return false;
  if (group > kLastGroupToReferTo) return false;
  const std::optional<Quantifier> quantifier = reader_.ReadQuantifier();
  if (!quantifier) return false;
  if (quantifier->IsOnce()) {
    constexpr auto kFirst = static_cast<std::size_t>(WatchPoint::kReference);
    AddWatchPoint(static_cast<WatchPoint>(kFirst + group - 1));
  } else {
    AddWatchPoint(WatchPoint::kRepeatedReference);
    result_.longestFixedRun = std::max<std::size_t>(result_.longestFixedRun, quantifier->least);
  }
  result_.expression += u"\\g{";
  AppendNumber(group, result_.expression);
  result_.expression += u'}';
  AppendQuantifier(*quantifier, result_.expression);
  AddWatchPoint(WatchPoint::kMoved);
  return true;
}

void Translator::OpenGroup(GroupKind kind) {
  const bool isCapturing = kind == GroupKind::kCapturing;
  if (isCapturing) isClosed_.push_back(false);
  openGroups_.push_back({kind, isCapturing ? ++result_.groups : 0, result_.expression.size()});
}

bool Translator::ReadGroupBegin() {
  struct Opening {
    std::u16string_view text;
    GroupKind kind;
  };
  for (const auto& [text, kind] :
       {Opening{u"?:", GroupKind::kPlain}, Opening{u"?=", GroupKind::kLookAhead},
        Opening{u"?!", GroupKind::kLookAhead}, Opening{u"", GroupKind::kCapturing}}) {
    if (!reader_.TryTake(text)) continue;
    result_.expression += u'(';
    result_.expression += text;
    OpenGroup(kind);
    return true;
  }
  return false;
}

bool Translator::ReadGroupEnd() {
  if (openGroups_.size() == 1) return false;
  const Group group = openGroups_.back();
  openGroups_.pop_back();
  if (group.kind == GroupKind::kCapturing) isClosed_[group.number - 1] = true;
  CountAlternatives(group);
  const bool isRepeated = reader_.IsAtQuantifier();
  if (group.kind == GroupKind::kLookAhead && isRepeated) return false;
  const std::optional<Quantifier> quantifier = reader_.ReadQuantifier();
  if (!quantifier) return false;
  // A repeated group may pass any number of characters, so each round has a watch point.
  if (isRepeated) AddWatchPoint(WatchPoint::kMoved);
  result_.expression += u')';
  AppendQuantifier(*quantifier, result_.expression);
  return true;
}

void Translator::CountAlternatives(const Group& group) {
  result_.mostAlternatives = std::max(result_.mostAlternatives, group.alternatives);
  if (group.alternatives <= kMostUnwatchedAlternatives) return;
  result_.expression.insert(group.begin, TextOf(WatchPoint::kChoice));
}

/// `append` writes the item to the end of a text.
template <typename Append>
bool Translator::AddCharacterItem(Append append) {
  const std::optional<Quantifier> quantifier = reader_.ReadQuantifier();
  if (!quantifier) return false;
  const bool isLong = quantifier->most > kLongestUnwatched;
  if (isLong) {
    const bool isFixed = quantifier->least > kLongestUnwatched;
    AddWatchPoint(isFixed ? WatchPoint::kFixedRun : WatchPoint::kMoved);
    result_.longestFixedRun = std::max<std::size_t>(result_.longestFixedRun, quantifier->least);
  }
  append(result_.expression);
  AppendQuantifier(*quantifier, result_.expression);
  unwatched_ += std::max(quantifier->most, 1U);
  if (isLong || unwatched_ > kLongestUnwatched) AddWatchPoint(WatchPoint::kMoved);
  return true;
}

/// An assertion reads no quantifier, so that a quantifier after it is not valid.
bool Translator::AddAssertion(std::u16string_view assertion) {
  result_.expression += assertion;
  return true;
}

void Translator::AddWatchPoint(WatchPoint point) {
  result_.expression += TextOf(point);
  unwatched_ = 0;
}

}  // namespace

std::optional<Translation> TranslateExpression(std::u16string_view expression) {
  return Translator(expression).Run();
}

}  // namespace Zq::Gantry::Security
