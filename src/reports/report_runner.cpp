#include <windows.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "reports/report_runner.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Its presence alone counts: then programs are not looked for in the current directory.
constexpr wchar_t kKeepOutName[] = L"NoDefaultCurrentDirectoryInExePath";
constexpr std::size_t kLongestVariableChars = 32767;

std::optional<std::wstring> TryReadVariable(const wchar_t* name) {
  std::wstring value(kLongestVariableChars + 1, L'\0');
  SetLastError(ERROR_SUCCESS);  // an empty value is no failure, and its length is 0 too
  const DWORD chars = GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
  if (chars == 0 && GetLastError() != ERROR_SUCCESS) return std::nullopt;
  value.resize(chars);
  return value;
}

/// Keeps the current directory out of the search for programs for as long as it lives, in this
/// process and those it starts.
class ScopedSafeSearch {
 public:
  ScopedSafeSearch() : before_(TryReadVariable(kKeepOutName)) {
    SetEnvironmentVariableW(kKeepOutName, L"1");
  }
  ScopedSafeSearch(const ScopedSafeSearch&) = delete;
  ScopedSafeSearch& operator=(const ScopedSafeSearch&) = delete;
  ~ScopedSafeSearch() {
    SetEnvironmentVariableW(kKeepOutName, before_ ? before_->c_str() : nullptr);
  }

 private:
  std::optional<std::wstring> before_;
};

}  // namespace

int RunReportTool(const wchar_t* folder, const char* commandLine) {
  SetCurrentDirectoryW(folder);
  const ScopedSafeSearch safeSearch;
  return std::system(commandLine);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
