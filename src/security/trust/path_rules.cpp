#include "security/trust/path_rules.h"

#include <algorithm>
#include <cwctype>

namespace Zq::Gantry::Security {

bool HasPrefix(std::wstring_view text, std::wstring_view prefix) {
  if (text.size() < prefix.size()) return false;
  return std::equal(prefix.begin(), prefix.end(), text.begin(), [](wchar_t first, wchar_t second) {
    return std::towlower(static_cast<std::wint_t>(first)) ==
           std::towlower(static_cast<std::wint_t>(second));
  });
}

std::optional<std::wstring> TryFindPackagedFolder(std::wstring_view fullPath) {
  // Kept on purpose: exact, though the roots are compared without regard to case (test
  // TryFindPackagedFolder.FindsOnlyTheExactSpelling).
  const std::size_t position = fullPath.find(kPackagedMarker);
  if (position == std::wstring_view::npos) return std::nullopt;
  return std::wstring(fullPath.substr(0, position + kPackagedMarker.size() - 1));
}

}  // namespace Zq::Gantry::Security
