#include <errno.h>
#include <sys/stat.h>

#include "base/failing_status.h"

namespace TestSupport {

namespace {

std::wstring failingPath;
int (*queryOfTheSystem)(const wchar_t*, struct _stat64*) = nullptr;

int FailQuery(const wchar_t* path, struct _stat64* status) {
  if (!failingPath.empty() && failingPath != path) return queryOfTheSystem(path, status);
  errno = EACCES;
  return -1;
}

}  // namespace

FailingStatus::FailingStatus(const std::wstring& path) : patch_("_wstat64", &FailQuery) {
  failingPath = path;
  queryOfTheSystem = patch_.Original<int(const wchar_t*, struct _stat64*)>();
}

}  // namespace TestSupport
