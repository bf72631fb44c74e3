#pragma once

// Stand-in: what the environment tells the simulated parts.

#include <windows.h>

#include <cstdint>
#include <cwchar>
#include <string>

namespace Standin {

/// Empty where the variable is not set or too long for the system.
inline std::wstring ReadVariable(const wchar_t* name) {
  std::wstring value(32 * 1024, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

/// A decimal number, `usual` where the variable is not set.
inline std::int64_t ReadNumberVariable(const wchar_t* name, std::int64_t usual) {
  const std::wstring text = ReadVariable(name);
  return text.empty() ? usual : std::wcstoll(text.c_str(), nullptr, 10);
}

}  // namespace Standin
