#pragma once

// Stand-in: settings of the simulated parts, read from environment variables.

#include <windows.h>

#include <cstdint>
#include <cwchar>
#include <string>

namespace Standin {

/// Empty if the variable is not set or is longer than the system allows.
[[nodiscard]] inline std::wstring ReadVariable(const wchar_t* name) {
  std::wstring value(32 * 1024, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

/// For variables that hold ASCII characters only.
[[nodiscard]] inline std::string ReadAsciiVariable(const wchar_t* name) {
  std::string text;
  for (const wchar_t c : ReadVariable(name)) text += static_cast<char>(c);
  return text;
}

/// A decimal number; `fallback` if the variable is not set.
[[nodiscard]] inline std::int64_t ReadNumberVariable(const wchar_t* name, std::int64_t fallback) {
  const std::wstring text = ReadVariable(name);
  return text.empty() ? fallback : std::wcstoll(text.c_str(), nullptr, 10);
}

}  // namespace Standin
