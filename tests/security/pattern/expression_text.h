#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace TestSupport {

[[nodiscard]] inline std::wstring Repeat(std::wstring_view part, std::size_t times) {
  std::wstring text;
  while (times-- > 0) text += part;
  return text;
}

[[nodiscard]] inline std::u16string Repeat(std::u16string_view part, std::size_t times) {
  std::u16string text;
  while (times-- > 0) text += part;
  return text;
}

/// A class of "a" and of `ranges` characters above U+00FF that are not next to each other.
[[nodiscard]] inline std::wstring ScatteredClass(int ranges) {
  std::wstring text = L"[";
  for (int i = 0; i < ranges; ++i) text += static_cast<wchar_t>(0x100 + 2 * i);
  return text + L"a]";
}

}  // namespace TestSupport
