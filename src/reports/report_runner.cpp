#include "reports/report_runner.h"

#include <windows.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// If this variable exists, with any value, programs are not searched for in the current directory
/// (NeedCurrentDirectoryForExePath).
constexpr wchar_t kKeepOutName[] = L"NoDefaultCurrentDirectoryInExePath";
constexpr std::size_t kLongestVariableChars = 32767;

std::optional<std::wstring> TryReadVariable(const wchar_t* name) {
  std::wstring value(kLongestVariableChars + 1, L'\0');
  SetLastError(ERROR_SUCCESS);  // a length of 0 is also that of an empty value
  const DWORD chars = GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
  if (chars == 0 && GetLastError() != ERROR_SUCCESS) return std::nullopt;
  value.resize(chars);
  return value;
}

/// While it lives, this process and those it starts do not search for programs in the current
/// directory.
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
  // NOLINTNEXTLINE(cert-env33-c,concurrency-mt-unsafe): the interpreter searches for the tool
  return std::system(commandLine);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
