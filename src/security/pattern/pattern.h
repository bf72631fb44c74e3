#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// Regular expressions in the default grammar of std::wregex (ECMAScript), matched by PCRE2 within
// limits of time and memory. docs/rules.md has the edge cases of the grammar, the limits and the
// measurements; docs/decisions/pattern.md has the reasons.
namespace Zq::Gantry::Security {

/// The longest expression, in characters. Its compiled form is limited too, to 64 Ki units.
inline constexpr std::size_t kMostExpressionChars = 100'000;
/// The deepest nesting of groups. Compiling takes stack for each level.
inline constexpr unsigned kDeepestGroups = 200;

/// The 16-bit units of a text, as Windows has them; they are the characters of expressions and
/// texts. If `wchar_t` has four bytes, a character beyond 0xFFFF becomes two units. Lone surrogates
/// and nulls are units like others.
[[nodiscard]] std::u16string CodeUnits(std::wstring_view text);

/// A valid expression, ready for matching. Any number of threads may match at once. A pattern that
/// was moved from may only be assigned to or destroyed. Nothing is logged.
class Pattern {
 public:
  /// Absent if the expression is not valid or is beyond the limits. Throws bad_alloc.
  [[nodiscard]] static std::optional<Pattern> TryCompile(std::wstring_view expression);

  Pattern(Pattern&&) noexcept;
  Pattern& operator=(Pattern&&) noexcept;
  ~Pattern();

  /// Whether the whole text matches, case-sensitively. Also false if the answer would take more
  /// time or memory than the limits allow. Throws bad_alloc.
  [[nodiscard]] bool Matches(std::wstring_view text) const;

 private:
  struct Compiled;
  explicit Pattern(std::unique_ptr<const Compiled> compiled);

  std::unique_ptr<const Compiled> compiled_;
};

}  // namespace Zq::Gantry::Security
