#include "wide_text.h"

#include <windows.h>

#include <algorithm>

namespace WattleafHost {

namespace {

bool IsWidenedByte(wchar_t c) { return c < 0x80 || c >= 0xFF80; }

bool IsUtf8(const std::string& bytes) {
  return bytes.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(),
                                              static_cast<int>(bytes.size()), nullptr, 0) > 0;
}

}  // namespace

std::string ToUtf8(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  const int bytes =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

std::wstring ToWide(const std::string& utf8) {
  const int bytes = static_cast<int>(utf8.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, text.data(), length);
  return text;
}

std::string ResultToUtf8(const std::wstring& result) {
  if (!std::all_of(result.begin(), result.end(), IsWidenedByte)) return ToUtf8(result);
  std::string bytes(result.size(), '\0');
  std::transform(result.begin(), result.end(), bytes.begin(),
                 [](wchar_t c) { return static_cast<char>(c & 0xFF); });
  return IsUtf8(bytes) ? bytes : ToUtf8(result);
}

}  // namespace WattleafHost
