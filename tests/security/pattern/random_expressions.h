#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TestSupport {

/// The splitmix64 sequence, the same on every platform.
class RandomSequence {
 public:
  explicit RandomSequence(std::uint64_t seed) : state_(seed) {}

  /// A number below `limit`.
  [[nodiscard]] std::size_t Below(std::size_t limit);
  /// True with a probability of 1 / `limit`.
  [[nodiscard]] bool IsOneIn(std::size_t limit) { return Below(limit) == 0; }

 private:
  std::uint64_t state_;
};

/// A small expression and texts to match.
struct RandomCase {
  std::wstring expression;
  std::vector<std::wstring> texts;
};

/// Generates small expressions that use the whole grammar. Three in ten get random changes, most of
/// which make them invalid. Texts have up to six characters, mostly ones that the expressions use
/// too.
class RandomExpressions {
 public:
  /// `others`: further characters for texts and expressions.
  RandomExpressions(std::uint64_t seed, std::wstring others);

  [[nodiscard]] RandomCase Next(std::size_t texts);

 private:
  std::wstring Alternatives(int depth);
  std::wstring Term(int depth);
  std::wstring Atom(int depth);
  std::wstring Class();
  std::wstring ClassPart();
  std::wstring Quantifier();
  std::wstring Character();
  std::wstring Damaged(std::wstring expression);
  std::wstring Text();
  std::wstring OneOf(const std::vector<std::wstring_view>& choices);

  RandomSequence random_;
  std::wstring others_;
  int groups_ = 0;       ///< capturing groups so far
  int quantifiers_ = 0;  ///< quantifiers left for this expression
};

}  // namespace TestSupport
