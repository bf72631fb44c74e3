#include "security/pattern/translation.h"

#include <algorithm>
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

std::u16string Digits(std::size_t number) {
  const std::string text = std::to_string(number);
  return {text.begin(), text.end()};
}

std::u16string TextOf(const Quantifier& quantifier) {
  if (quantifier.IsOnce()) return {};
  std::u16string text = u"{" + Digits(quantifier.least) + u",";
  if (quantifier.most != Quantifier::kUnlimited) text += Digits(quantifier.most);
  return text + (quantifier.isLazy ? u"}?" : u"}");
}

std::u16string TextOf(WatchPoint point) {
  return u"(?C" + Digits(static_cast<std::size_t>(point)) + u")";
}

/// The characters that "." matches: all but the line ends.
const CharacterSet& AnyOfALine() {
  static const CharacterSet set = [] {
    CharacterSet lineEnds;
    for (const char16_t character : {u'\n', u'\r', u'\u2028', u'\u2029'}) lineEnds.Add(character);
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
  explicit Translator(std::u16string_view expression) : reader_(expression) {}

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
  bool AddCharacterItem(std::u16string_view item);
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
      return AddCharacterItem(EscapedCharacter(character));
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
  return AddCharacterItem(ClassText(*set));
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
  result_.expression += u"\\g{" + Digits(group) + u"}" + TextOf(*quantifier);
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
  result_.expression += u")" + TextOf(*quantifier);
  return true;
}

void Translator::CountAlternatives(const Group& group) {
  result_.mostAlternatives = std::max(result_.mostAlternatives, group.alternatives);
  if (group.alternatives <= kMostUnwatchedAlternatives) return;
  result_.expression.insert(group.begin, TextOf(WatchPoint::kChoice));
}

bool Translator::AddCharacterItem(std::u16string_view item) {
  const std::optional<Quantifier> quantifier = reader_.ReadQuantifier();
  if (!quantifier) return false;
  const std::u16string repeated = std::u16string(item) + TextOf(*quantifier);
  if (quantifier->most > kLongestUnwatched) {
    const bool isFixed = quantifier->least > kLongestUnwatched;
    AddWatchPoint(isFixed ? WatchPoint::kFixedRun : WatchPoint::kMoved);
    result_.longestFixedRun = std::max<std::size_t>(result_.longestFixedRun, quantifier->least);
    result_.expression += repeated;
    AddWatchPoint(WatchPoint::kMoved);
    return true;
  }
  result_.expression += repeated;
  unwatched_ += std::max(quantifier->most, 1U);
  if (unwatched_ > kLongestUnwatched) AddWatchPoint(WatchPoint::kMoved);
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
