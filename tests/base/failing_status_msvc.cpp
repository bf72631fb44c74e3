#include <windows.h>

#include "base/failing_status.h"

namespace TestSupport {

namespace {

std::wstring failingPath;
BOOL(WINAPI* queryOfTheSystem)(const wchar_t*, GET_FILEEX_INFO_LEVELS, void*) = nullptr;

BOOL WINAPI FailQuery(const wchar_t* path, GET_FILEEX_INFO_LEVELS level, void* attributes) {
  if (!failingPath.empty() && failingPath != path) return queryOfTheSystem(path, level, attributes);
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

}  // namespace

FailingStatus::FailingStatus(const std::wstring& path)
    : patch_("GetFileAttributesExW", &FailQuery) {
  failingPath = path;
  queryOfTheSystem = patch_.Original<BOOL WINAPI(const wchar_t*, GET_FILEEX_INFO_LEVELS, void*)>();
}

}  // namespace TestSupport
