#include "catalogue/registry_calls.h"

#include <gtest/gtest.h>

namespace TestSupport {

RegistryCalls* RegistryCalls::current_ = nullptr;

RegistryCalls::RegistryCalls()
    : open_("RegOpenKeyExW", &Open),
      enumerate_("RegEnumKeyExW", &Enumerate),
      query_("RegQueryValueExW", &Query),
      close_("RegCloseKey", &Close) {
  current_ = this;
}

RegistryCalls::~RegistryCalls() {
  EXPECT_TRUE(openKeys_.empty()) << "a key was not closed";
  current_ = nullptr;
}

void RegistryCalls::ExpectOpen(HKEY key, const char* call) {
  EXPECT_TRUE(current_->openKeys_.contains(key)) << call << " of a key that is not open";
}

LSTATUS WINAPI RegistryCalls::Open(HKEY parent, const wchar_t* path, DWORD options, REGSAM access,
                                   HKEY* key) {
  RegistryCalls& calls = *current_;
  calls.opened.push_back({parent, path, options, access});
  std::optional<LSTATUS> status;
  if (calls.onOpen) status = calls.onOpen(path);
  // A failing call may write an invalid handle, which must not be closed.
  if (status) *key = HKEY_PERFORMANCE_DATA;
  if (!status) status = calls.open_.Original<decltype(Open)>()(parent, path, options, access, key);
  if (*status == ERROR_SUCCESS) calls.openKeys_.insert(*key);
  return *status;
}

LSTATUS WINAPI RegistryCalls::Enumerate(HKEY key, DWORD index, wchar_t* name, DWORD* nameChars,
                                        DWORD* reserved, wchar_t* className, DWORD* classChars,
                                        FILETIME* written) {
  RegistryCalls& calls = *current_;
  ExpectOpen(key, "RegEnumKeyExW");
  const DWORD passed = *nameChars;
  std::optional<LSTATUS> status;
  if (calls.onEnumerate) status = calls.onEnumerate(index, name, nameChars);
  if (!status) {
    status = calls.enumerate_.Original<decltype(Enumerate)>()(key, index, name, nameChars, reserved,
                                                              className, classChars, written);
  }
  calls.enumerated.push_back({index, passed, *status});
  return *status;
}

LSTATUS WINAPI RegistryCalls::Query(HKEY key, const wchar_t* value, DWORD* reserved, DWORD* type,
                                    BYTE* data, DWORD* bytes) {
  ExpectOpen(key, "RegQueryValueExW");
  current_->queried.push_back({value, *bytes});
  return current_->query_.Original<decltype(Query)>()(key, value, reserved, type, data, bytes);
}

LSTATUS WINAPI RegistryCalls::Close(HKEY key) {
  ExpectOpen(key, "RegCloseKey");
  const auto open = current_->openKeys_.find(key);
  if (open == current_->openKeys_.end()) return ERROR_INVALID_HANDLE;
  current_->openKeys_.erase(open);
  return current_->close_.Original<decltype(Close)>()(key);
}

}  // namespace TestSupport
