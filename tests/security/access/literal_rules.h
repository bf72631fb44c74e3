#pragma once

#include <cwctype>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

// The rules on lists as they are defined, without any shortcut: tests and the fuzz target compare
// the judges with them.
namespace TestSupport {

/// The list cut by the standard line reader.
inline std::vector<std::wstring> LiteralItems(const std::wstring& list) {
  std::vector<std::wstring> items;
  std::wistringstream stream(list);
  for (std::wstring item; std::getline(stream, item, L',');) items.push_back(item);
  return items;
}

/// Folds both characters of every pair.
inline bool LiteralHasPrefix(std::wstring_view text, std::wstring_view prefix) {
  if (text.size() < prefix.size()) return false;
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    if (std::towlower(static_cast<std::wint_t>(text[i])) !=
        std::towlower(static_cast<std::wint_t>(prefix[i]))) {
      return false;
    }
  }
  return true;
}

inline bool LiteralHasPathShape(std::wstring_view text) {
  const auto isWord = [](wchar_t c) {
    return c == L'_' || std::iswalnum(static_cast<std::wint_t>(c)) != 0;
  };
  text = text.substr(0, text.find(L'\0'));
  if (text.starts_with(L"\\") || text.starts_with(L"http:") || text.starts_with(L"https:")) {
    return true;
  }
  if (text.size() >= 2 && isWord(text[0]) && text[1] == L':') return true;
  const std::size_t end = text.find(L'%', 1);
  if (!text.starts_with(L'%') || end == text.npos || end == 1) return false;
  for (const wchar_t c : text.substr(1, end - 1)) {
    if (c != L'(' && c != L'|' && c != L')' && !isWord(c)) return false;
  }
  return true;
}

inline bool LiteralIsClimbingPath(std::wstring_view text) {
  const std::wstring_view upToNull = text.substr(0, text.find(L'\0'));
  return LiteralHasPathShape(text) && upToNull.find(L"..") != upToNull.npos;
}

struct RuleAnswers {
  bool isClimbing = false;
  bool isContained = false;  ///< of IsContainedInList
  bool isBegun = false;      ///< of BeginsWithFromList
};

inline RuleAnswers LiteralAnswers(const std::wstring& list, const std::wstring& value) {
  RuleAnswers answers;
  answers.isClimbing = LiteralIsClimbingPath(value);
  if (answers.isClimbing) return answers;
  for (const std::wstring& item : LiteralItems(list)) {
    if (item == value) answers.isContained = true;
    if (LiteralHasPrefix(value, item)) answers.isBegun = true;
  }
  return answers;
}

}  // namespace TestSupport
