#include "security/access/pattern_weight.h"

#include <algorithm>
#include <vector>

namespace Zq::Gantry::Security {

namespace {

/// Where counting stops. Its square still fits, so that one product of two never wraps.
constexpr std::size_t kImmeasurable = 1'000'000'000;

/// Groups inside groups at which reading stops.
constexpr std::size_t kDeepestWeighed = 1000;

/// A class is looked through from its first part to its last for each character of the value. Of
/// characters and ranges it may have this many for each state, of "\w" and "[:alpha:]" fewer.
constexpr std::size_t kClassPartsOfAState = 64;
constexpr std::size_t kPartsOfANamedOne = 20;

bool IsDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }

/// Beyond ASCII, what a digit is depends on the C library.
bool MayBeDigit(wchar_t character) { return IsDigit(character) || character > L'\x7F'; }

std::size_t Add(std::size_t first, std::size_t second) {
  return std::min(first + second, kImmeasurable);
}

std::size_t Multiply(std::size_t first, std::size_t second) {
  return std::min(first * second, kImmeasurable);
}

/// What is weighed of a part of an expression.
struct Size {
  std::size_t states = 0;
  std::size_t chain = 0;

  void Grow(std::size_t more) {
    states = Add(states, more);
    chain = Add(chain, more);
  }
};

/// Reads an expression once, from left to right. Each open group has a level: what is weighed of it
/// so far, and apart from that its last atom, which a quantifier may still multiply.
class PatternScale {
 public:
  explicit PatternScale(std::wstring_view pattern) : rest_(pattern) {}

  PatternWeight Weigh() {
    while (!rest_.empty() && levels_.size() <= kDeepestWeighed) TakeOne();
    while (levels_.size() > 1) CloseGroup();
    const Size whole = SizeOf(levels_.back());
    weight_.states = whole.states;
    weight_.chain = whole.chain;
    return weight_;
  }

 private:
  struct Level {
    Size before{2, 2};            ///< its chain is that of the choices between the alternatives
    std::size_t alternative = 0;  ///< chain of the alternative that is being read
    std::size_t longest = 0;      ///< chain of the longest alternative before it
    Size atom;
    bool isCharacter = false;  ///< the atom is, and never matches without one
  };

  static Size SizeOf(const Level& level) {
    const std::size_t last = Add(level.alternative, level.atom.chain);
    return {Add(level.before.states, level.atom.states),
            Add(level.before.chain, std::max(level.longest, last))};
  }

  wchar_t Take() {
    if (rest_.empty()) return L'\0';
    const wchar_t character = rest_.front();
    rest_.remove_prefix(1);
    return character;
  }

  void TakeOne() {
    switch (Take()) {
      case L'\\':
        return TakeEscape();
      case L'[':
        return TakeClass();
      case L'(':
        return OpenGroup();
      case L')':
        return levels_.size() > 1 ? CloseGroup() : AddCharacter();
      case L'*':
      case L'+':
        levels_.back().isCharacter = false;
        levels_.back().atom.Grow(2);  // a loop back
        return NoteLoop();
      case L'?':
        levels_.back().isCharacter = false;
        return levels_.back().atom.Grow(2);  // a way past
      case L'{':
        return RepeatAtom(TakeLargestCount());
      case L'|':
        return BeginAlternative();
      default:
        return AddCharacter();
    }
  }

  void AddAtom(Size size, bool isCharacter) {
    Level& level = levels_.back();
    level.before.states = Add(level.before.states, level.atom.states);
    level.alternative = Add(level.alternative, level.atom.chain);
    level.atom = size;
    level.isCharacter = isCharacter;
  }

  void AddCharacter() { AddAtom({1, 1}, /*isCharacter=*/true); }

  /// A back-reference and the edge of a word may match without a character.
  void TakeEscape() {
    const wchar_t kind = Take();
    if (kind == L'c') Take();  // "\c(" is one character
    AddAtom({1, 1}, !IsDigit(kind) && kind != L'b' && kind != L'B');
    // A quantifier behind "\12" repeats the reference, not the 2.
    while (IsDigit(kind) && !rest_.empty() && MayBeDigit(rest_.front())) {
      Take();
      AddAtom({1, 1}, /*isCharacter=*/false);
    }
  }

  void TakeClass() {
    const std::size_t parts = SkipClass();
    AddAtom({1 + parts / kClassPartsOfAState, 1}, /*isCharacter=*/true);
  }

  /// One state for the choice, and one where its ways meet. A match takes one of the ways.
  void BeginAlternative() {
    AddAtom({}, /*isCharacter=*/false);
    Level& level = levels_.back();
    level.before.Grow(2);
    level.longest = std::max(level.longest, level.alternative);
    level.alternative = 0;
  }

  void NoteLoop() { weight_.loop = std::max(weight_.loop, levels_.back().atom.chain); }

  /// The copies, with a state beside each, and the original, which stays behind. Copies of one
  /// character are never passed in a row: each takes one from the text.
  void RepeatAtom(std::size_t count) {
    Level& level = levels_.back();
    const std::size_t copies = Add(count, 1);
    level.atom.states = Add(Multiply(Add(level.atom.states, 1), copies), 2);
    if (level.isCharacter) {
      level.atom.chain = Add(level.atom.chain, 3);
    } else {
      NoteLoop();
      level.atom.chain = Add(Multiply(Add(level.atom.chain, 1), copies), 2);
    }
    level.isCharacter = false;
  }

  void OpenGroup() {
    ++weight_.groups;
    if (rest_.starts_with(L"?=") || rest_.starts_with(L"?!")) ++weight_.looks;
    levels_.emplace_back();
    weight_.nesting = std::max(weight_.nesting, levels_.size() - 1);
  }

  void CloseGroup() {
    Size size = SizeOf(levels_.back());
    size.Grow(1);
    levels_.pop_back();
    AddAtom(size, /*isCharacter=*/false);
  }

  /// The larger of the numbers up to the closing brace.
  std::size_t TakeLargestCount() {
    std::size_t largest = 0;
    std::size_t number = 0;
    for (wchar_t c = Take(); c != L'}' && !rest_.empty(); c = Take()) {
      const std::size_t digit = IsDigit(c) ? static_cast<std::size_t>(c - L'0') : 9;
      number = c == L',' ? 0 : Add(Multiply(number, 10), digit);
      largest = std::max(largest, number);
    }
    return largest;
  }

  /// Up to the bracket that closes a class: not one that is escaped, nor one of "[:name:]". Gives
  /// the number of parts.
  std::size_t SkipClass() {
    std::size_t parts = 0;
    while (!rest_.empty()) {
      const wchar_t character = Take();
      if (character == L']') break;
      if (character == L'\\') {
        parts += SkipEscapedPart();
      } else {
        parts += character == L'[' ? SkipNamedPart() : 1;
      }
    }
    return parts;
  }

  std::size_t SkipEscapedPart() {
    const wchar_t kind = Take();
    if (kind == L'c') Take();
    const bool isNamed = std::wstring_view(L"dDsSwW").find(kind) != std::wstring_view::npos;
    return isNamed ? kPartsOfANamedOne : 1;
  }

  /// What may come behind a bracket inside a class, which else is a character.
  std::size_t SkipNamedPart() {
    const wchar_t kind = rest_.empty() ? L'\0' : rest_.front();
    if (kind != L':' && kind != L'.' && kind != L'=') return 1;
    Take();
    while (!rest_.empty() && Take() != kind) continue;
    Take();
    return kPartsOfANamedOne;
  }

  std::wstring_view rest_;
  PatternWeight weight_;
  std::vector<Level> levels_ = std::vector<Level>(1);
};

}  // namespace

PatternWeight WeighPattern(std::wstring_view pattern) { return PatternScale(pattern).Weigh(); }

}  // namespace Zq::Gantry::Security
