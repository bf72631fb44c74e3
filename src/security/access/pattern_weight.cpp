#include "security/access/pattern_weight.h"

#include <algorithm>
#include <vector>

namespace Zq::Gantry::Security {

namespace {

/// Where counting stops. Its square still fits, so that one product of two never wraps.
constexpr std::size_t kImmeasurable = 1'000'000'000;

std::size_t Add(std::size_t first, std::size_t second) {
  return std::min(first + second, kImmeasurable);
}

std::size_t Multiply(std::size_t first, std::size_t second) {
  return std::min(first * second, kImmeasurable);
}

/// Reads an expression once, from left to right. Each open group has a level: what is weighed of it
/// so far, and apart from that its last atom, which a quantifier may still multiply.
class PatternScale {
 public:
  explicit PatternScale(std::wstring_view pattern) : rest_(pattern) {}

  PatternWeight Weigh() {
    while (!rest_.empty()) TakeOne();
    while (levels_.size() > 1) CloseGroup();
    weight_.states = Add(levels_.back().before, levels_.back().atom);
    return weight_;
  }

 private:
  struct Level {
    std::size_t before = 2;
    std::size_t atom = 0;
  };

  wchar_t Take() {
    if (rest_.empty()) return L'\0';
    const wchar_t character = rest_.front();
    rest_.remove_prefix(1);
    return character;
  }

  void TakeOne() {
    switch (Take()) {
      case L'\\':
        Take();
        return AddAtom(1);
      case L'[':
        SkipClass();
        return AddAtom(1);
      case L'(':
        return OpenGroup();
      case L')':
        return levels_.size() > 1 ? CloseGroup() : AddAtom(1);
      case L'*':
      case L'+':
      case L'?':
        return GrowAtom(2);
      case L'{':
        return RepeatAtom(TakeLargestCount());
      case L'|':
        return AddAtom(2);  // one for the choice, and one where its ways meet
      default:
        return AddAtom(1);
    }
  }

  void AddAtom(std::size_t states) {
    Level& level = levels_.back();
    level.before = Add(level.before, level.atom);
    level.atom = states;
  }

  /// A loop back, or a way past.
  void GrowAtom(std::size_t states) { levels_.back().atom = Add(levels_.back().atom, states); }

  /// The copies, with a state beside each, and the original, which stays behind.
  void RepeatAtom(std::size_t count) {
    std::size_t& atom = levels_.back().atom;
    atom = Add(Multiply(Add(atom, 1), Add(count, 1)), 2);
  }

  void OpenGroup() {
    ++weight_.groups;
    levels_.emplace_back();
    weight_.nesting = std::max(weight_.nesting, levels_.size() - 1);
  }

  void CloseGroup() {
    const std::size_t states = Add(levels_.back().before, levels_.back().atom);
    levels_.pop_back();
    AddAtom(Add(states, 1));
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
