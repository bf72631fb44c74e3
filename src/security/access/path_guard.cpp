#include "security/access/path_guard.h"

#include <algorithm>
#include <cwctype>

namespace Zq::Gantry::Security {

namespace {

std::wstring_view UpToNull(std::wstring_view text) { return text.substr(0, text.find(L'\0')); }

/// \w as in the standard library's expressions: letters and digits of the C library, and "_".
bool IsWordCharacter(wchar_t character) {
  return character == L'_' || std::iswalnum(static_cast<std::wint_t>(character)) != 0;
}

bool StartsWithDrive(std::wstring_view text) {
  return text.size() >= 2 && text[1] == L':' && IsWordCharacter(text[0]);
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

}  // namespace

bool HasPathShape(std::wstring_view text) {
  text = UpToNull(text);
  return text.starts_with(L'\\') || text.starts_with(L"http:") || text.starts_with(L"https:") ||
         StartsWithDrive(text) || StartsWithVariable(text);
}

bool HasTraversal(std::wstring_view text) {
  return UpToNull(text).find(L"..") != std::wstring_view::npos;
}

bool IsClimbingPath(std::wstring_view text) { return HasPathShape(text) && HasTraversal(text); }

}  // namespace Zq::Gantry::Security
