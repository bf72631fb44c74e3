#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// Whether the value of a request's parameter passes a rule, rule and value being plain texts.
// "Climbing" paths (path_guard.h) pass none of the first four, the fourth after their expansion.
// Nothing is logged. Running out of memory is raised.
namespace Zq::Gantry::Security {

/// The whole value matches the regular expression.
bool PassesRegex(const std::wstring& pattern, const std::wstring& value);

/// The value is an item of the list, in the same spelling.
bool IsContainedInList(std::wstring_view list, std::wstring_view value);

/// The value begins with an item of the list, whatever the case. An empty item begins every value.
bool BeginsWithFromList(std::wstring_view list, std::wstring_view value);

/// The full form of a path, its variables expanded; empty where there is none.
using PathExpansion = std::function<std::wstring(const std::wstring& path)>;

/// Items of one list that are expanded at most: each costs calls of the system and lines in the
/// log.
inline constexpr std::size_t kMostExpandedItems = 100'000;

/// The same for value and items in their full form. The value is expanded first, then the items one
/// by one until one fits. Items behind the first kMostExpandedItems are not looked at.
bool BeginsWithFromExpandedList(std::wstring_view list, const std::wstring& value,
                                const PathExpansion& expand);

/// The text of a rule's limit, "min" or "max"; absent where the rule does not limit that side.
using LimitText = std::function<std::optional<std::wstring>(const wchar_t* name)>;

/// The number, without its fraction, is neither below "min" nor above "max", which are asked for in
/// this order and as far as it takes. False for not-a-number, and for a limit without a number.
/// Raises out_of_range for a limit beyond 32 bits.
bool LiesInNumericRange(double number, const LimitText& limitText);

}  // namespace Zq::Gantry::Security
