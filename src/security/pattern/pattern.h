#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

// Regular expressions in the default grammar (ECMAScript) of the standard library's, matched by
// PCRE2 within limits of time and memory. docs/rules.md has the grammar's edges, the limits and
// what was measured.
namespace Zq::Gantry::Security {

/// Characters of an expression. What PCRE2 makes of it is limited too, to 64 Ki units.
inline constexpr std::size_t kMostExpressionChars = 100'000;
/// Groups inside groups: compiling takes stack for each.
inline constexpr unsigned kDeepestGroups = 200;

/// A valid expression, ready for matching. Any number of threads may match at once.
class Pattern {
 public:
  /// Nothing if the expression is not valid, or beyond the limits. Throws bad_alloc.
  static std::optional<Pattern> TryCompile(std::wstring_view expression);

  Pattern(Pattern&&) noexcept;
  Pattern& operator=(Pattern&&) noexcept;
  ~Pattern();

  /// Whether the whole text matches, by case. False too if the answer would take more time or
  /// memory than the limits allow. Throws bad_alloc.
  bool Matches(std::wstring_view text) const;

 private:
  struct Compiled;
  explicit Pattern(std::unique_ptr<const Compiled> compiled);

  std::unique_ptr<const Compiled> compiled_;
};

}  // namespace Zq::Gantry::Security
