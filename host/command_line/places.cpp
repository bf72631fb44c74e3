#include "command_line/places.h"

#include <stdlib.h>

#include <algorithm>

#include "base/utf8_text.h"

namespace WattleafHost {

using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

std::wstring ModulePath(HMODULE module) {
  constexpr std::size_t kLongestPathChars = 32768;
  std::wstring path(kLongestPathChars, L'\0');
  const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
  path.resize(std::min<std::size_t>(length, path.size()));
  return path;
}

std::wstring ProgramFolder() {
  const std::wstring path = ModulePath(nullptr);
  const auto separator = path.find_last_of(L'\\');
  return separator == std::wstring::npos ? std::wstring(L".") : path.substr(0, separator);
}

std::string LogFile() {
  const wchar_t* path = _wgetenv(L"WATTLEAF_LOG_FILE");
  return path == nullptr ? std::string() : ToUtf8(path);
}

std::string DefaultIconFolder() { return ToUtf8(ProgramFolder()) + "\\Icons"; }

bool IsFile(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(FromUtf8(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace WattleafHost
