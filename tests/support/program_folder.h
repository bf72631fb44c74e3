#pragma once

#include <windows.h>

#include <string>

namespace TestSupport {

/// The path of `name` in the folder of this program.
[[nodiscard]] inline std::wstring PathBesideProgram(const std::wstring& name) {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\') + 1) + name;
}

}  // namespace TestSupport
