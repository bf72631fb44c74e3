#include "security/access/pattern_weight.h"

#include <algorithm>
#include <vector>

namespace Zq::Gantry::Security {

namespace {

/// Where counting stops. Its square still fits, so that one product of two never wraps.
constexpr std::size_t kImmeasurable = 1'000'000'000;

/// Groups inside groups at which reading stops.
constexpr std::size_t kDeepestWeighed = 1000;

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
        SkipClass();
        return AddCharacter();
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
    const bool isDigit = kind >= L'0' && kind <= L'9';
    AddAtom({1, 1}, !isDigit && kind != L'b' && kind != L'B');
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
      const bool isDigit = c >= L'0' && c <= L'9';
      number = isDigit ? Add(Multiply(number, 10), static_cast<std::size_t>(c - L'0')) : 0;
      largest = std::max(largest, number);
    }
    return largest;
  }

  /// Up to the bracket that closes a class: not one that is escaped, nor one of "[:name:]".
  void SkipClass() {
    while (!rest_.empty()) {
      const wchar_t character = Take();
      if (character == L']') return;
      if (character == L'\\' && Take() == L'c') Take();
      if (character == L'[') SkipNamedPart();
    }
  }

  void SkipNamedPart() {
    const wchar_t kind = rest_.empty() ? L'\0' : rest_.front();
    if (kind != L':' && kind != L'.' && kind != L'=') return;
    Take();
    while (!rest_.empty() && Take() != kind) continue;
    Take();
  }

  std::wstring_view rest_;
  PatternWeight weight_;
  std::vector<Level> levels_ = std::vector<Level>(1);
};

}  // namespace

PatternWeight WeighPattern(std::wstring_view pattern) { return PatternScale(pattern).Weigh(); }

}  // namespace Zq::Gantry::Security
