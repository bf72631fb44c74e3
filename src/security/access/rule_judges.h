#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// Whether the value of a request's parameter passes a rule, rule and value being plain texts: the
// portable half of rule_validators.h. Climbing paths (IsClimbingPath) pass none of the first
// four rules, the fourth after their expansion. Nothing is logged. Throws bad_alloc.
namespace Zq::Gantry::Security {

// The guard against climbing paths: absolute paths with two points in a row. Both checks end at the
// first null character. Each has the same answer as a search for the expression in its comment
// (ECMAScript, with `^` as the start of the text only), in linear time and without recursion.

/// ^((?:[\w]\:|\\)|(http[s]?\:)|(\%[\(|\w|\)]+\%))+
/// Begins with a drive letter and its colon, a backslash, a web scheme with its colon, or a
/// variable between percent signs.
[[nodiscard]] bool HasPathShape(std::wstring_view text);

/// ((\/+)?\.\.(\/+)?)
/// Contains two points in a row.
[[nodiscard]] bool HasTraversal(std::wstring_view text);

/// Whether the path guard refuses the text: it has the shape of a path and contains a traversal.
[[nodiscard]] bool IsClimbingPath(std::wstring_view text);

/// The items of a rule's list, one after another: the text is cut at each comma and nothing is
/// trimmed. There is an empty item between two commas in a row, but none after a comma at the end,
/// and an empty text has no items. The text must outlive the reader and the items.
class ListReader {
 public:
  explicit ListReader(std::wstring_view text) : rest_(text) {}

  /// The next item; absent after the last one.
  [[nodiscard]] std::optional<std::wstring_view> TryNext() {
    if (rest_.empty()) return std::nullopt;
    // Items are short: this is faster than find, which calls wmemchr for each.
    const wchar_t* const end = rest_.data() + rest_.size();
    const wchar_t* const comma = std::find(rest_.data(), end, L',');
    const std::wstring_view item(rest_.data(), comma);
    const bool hasComma = comma != end;
    rest_.remove_prefix(item.size() + (hasComma ? 1 : 0));
    return item;
  }

 private:
  std::wstring_view rest_;
};

/// The text of a number that is compared with a list's items: the shortest decimal text that reads
/// back as the same number, such as "3", "0.1", "1e+06".
[[nodiscard]] std::wstring ShortestNumberText(double number);

/// The whole value matches the regular expression. False if `pattern` is not valid.
[[nodiscard]] bool PassesRegex(const std::wstring& pattern, const std::wstring& value);

/// The value is an item of the list, in the same spelling.
[[nodiscard]] bool IsContainedInList(std::wstring_view list, std::wstring_view value);

/// The value begins with an item of the list, without regard to case. Every value begins with an
/// empty item.
[[nodiscard]] bool BeginsWithFromList(std::wstring_view list, std::wstring_view value);

/// Returns the full form of a path, its variables expanded, or an empty text on failure.
using PathExpansion = std::function<std::wstring(const std::wstring& path)>;

/// The largest number of items of one list that are expanded, since each costs system calls and
/// lines in the log.
inline constexpr std::size_t kMostExpandedItems = 100'000;

/// The same for value and items in their full form. The value is expanded first, then the items one
/// by one until one fits. Items after the first kMostExpandedItems are not looked at.
[[nodiscard]] bool BeginsWithFromExpandedList(std::wstring_view list, const std::wstring& value,
                                              const PathExpansion& expand);

/// Returns the text of a rule's limit, "min" or "max"; absent if the rule does not limit that side.
using LimitText = std::function<std::optional<std::wstring>(const wchar_t* name)>;

/// The number, without its fraction, is neither below "min" nor above "max". "max" is not read if
/// "min" decides. False for not-a-number, and for a limit without a number. Throws
/// std::out_of_range for a limit beyond 32 bits.
[[nodiscard]] bool LiesInNumericRange(double number, const LimitText& limitText);

}  // namespace Zq::Gantry::Security
