#include "security/access/rule_judges.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cwctype>
#include <limits>
#include <stdexcept>

#include "security/pattern/pattern.h"
#include "security/trust/path_rules.h"

namespace Zq::Gantry::Security {

namespace {

/// \w as in the standard library's expressions: letters and digits of the C library, and "_".
bool IsWordCharacter(wchar_t character) {
  return character == L'_' || std::iswalnum(static_cast<std::wint_t>(character)) != 0;
}

bool StartsWithDrive(std::wstring_view text) {
  return text.size() >= 2 && text[1] == L':' && IsWordCharacter(text[0]);
}

bool StartsWithWebScheme(std::wstring_view text) {
  return text.starts_with(L'h') && (text.starts_with(L"http:") || text.starts_with(L"https:"));
}

bool StartsWithVariable(std::wstring_view text) {
  if (!text.starts_with(L'%')) return false;
  const auto isInside = [](wchar_t c) {
    return c == L'(' || c == L'|' || c == L')' || IsWordCharacter(c);
  };
  const auto end = std::find_if_not(text.begin() + 1, text.end(), isInside);
  const bool isEmpty = end == text.begin() + 1;
  return !isEmpty && end != text.end() && *end == L'%';
}

/// Whether one of the first `most` items fits.
template <typename Fits>
bool HasItem(std::wstring_view list, Fits fits,
             std::size_t most = std::numeric_limits<std::size_t>::max()) {
  ListReader items(list);
  for (; most > 0; --most) {
    const auto item = items.TryNext();
    if (!item) return false;
    if (fits(*item)) return true;
  }
  return false;
}

/// By the rules of stoi: white space before the number and text after it are ignored.
std::optional<int> TryReadLimit(const LimitText& limitText, const wchar_t* name) {
  const std::optional<std::wstring> text = limitText(name);
  if (!text) return std::nullopt;
  return std::stoi(*text);
}

}  // namespace

// No beginning of a path contains a null character, so the shape needs no search for the first one.
bool HasPathShape(std::wstring_view text) {
  return text.starts_with(L'\\') || StartsWithDrive(text) || StartsWithWebScheme(text) ||
         StartsWithVariable(text);
}

bool HasTraversal(std::wstring_view text) {
  const std::size_t points = text.find(L"..");
  return points != std::wstring_view::npos &&
         text.substr(0, points).find(L'\0') == std::wstring_view::npos;
}

bool IsClimbingPath(std::wstring_view text) { return HasPathShape(text) && HasTraversal(text); }

std::wstring ShortestNumberText(double number) {
  std::array<char, 32> text{};  // 24 characters at most: "-1.2345678901234567e-308"
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
  return std::wstring(text.data(), end);
}

bool PassesRegex(const std::wstring& pattern, const std::wstring& value) {
  const std::optional<Pattern> compiled = Pattern::TryCompile(pattern);
  return compiled && !IsClimbingPath(value) && compiled->Matches(value);
}

bool IsContainedInList(std::wstring_view list, std::wstring_view value) {
  if (IsClimbingPath(value)) return false;
  return HasItem(list, [value](std::wstring_view item) { return item == value; });
}

bool BeginsWithFromList(std::wstring_view list, std::wstring_view value) {
  if (IsClimbingPath(value)) return false;
  // Kept on purpose: every value begins with an empty item (test
  // BeginsWithFromList.AcceptsEveryValueButAClimbingPathForAnEmptyItem).
  LowerCase lowerCase;
  return HasItem(list, [&](std::wstring_view item) { return HasPrefix(value, item, lowerCase); });
}

bool BeginsWithFromExpandedList(std::wstring_view list, const std::wstring& value,
                                const PathExpansion& expand) {
  const std::wstring expanded = expand(value);
  if (IsClimbingPath(expanded)) return false;
  // Kept on purpose: an item that cannot be expanded is empty, and every value begins with it (test
  // BeginsWithFromExpandedList.AcceptsEveryValueForAnItemThatCannotBeExpanded).
  std::wstring path;  // one block for all items
  LowerCase lowerCase;
  const auto fits = [&](std::wstring_view item) {
    path = item;
    return HasPrefix(expanded, expand(path), lowerCase);
  };
  return HasItem(list, fits, kMostExpandedItems);
}

bool LiesInNumericRange(double number, const LimitText& limitText) try {
  if (std::isnan(number)) return false;
  // Compared as a double, since a number beyond 32 bits has no integer.
  const double whole = std::trunc(number);
  const std::optional<int> least = TryReadLimit(limitText, L"min");
  if (least && whole < *least) return false;
  const std::optional<int> most = TryReadLimit(limitText, L"max");
  return !most || whole <= *most;
} catch (const std::invalid_argument&) {
  return false;
}

}  // namespace Zq::Gantry::Security
