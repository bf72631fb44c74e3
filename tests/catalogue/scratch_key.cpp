#include "catalogue/scratch_key.h"

#include <gtest/gtest.h>

#include "platform/win32/owners.h"

namespace TestSupport {

namespace {

Zq::Gantry::Platform::UniqueRegKey Create(HKEY hive, const std::wstring& path) {
  // A non-volatile key cannot lie below a volatile one, and a test below HKEY_LOCAL_MACHINE may
  // need non-volatile keys.
  const DWORD options = hive == HKEY_CURRENT_USER ? REG_OPTION_VOLATILE : REG_OPTION_NON_VOLATILE;
  Zq::Gantry::Platform::UniqueRegKey key;
  EXPECT_EQ(RegCreateKeyExW(hive, path.c_str(), 0, nullptr, options, KEY_ALL_ACCESS, nullptr,
                            key.out(), nullptr),
            ERROR_SUCCESS);
  return key;
}

std::wstring OwnPath() {
  static int count = 0;
  return L"Software\\WattleafTest" + std::to_wstring(GetCurrentProcessId()) + L"-" +
         std::to_wstring(count++);
}

}  // namespace

ScratchKey::ScratchKey() : ScratchKey(HKEY_CURRENT_USER, OwnPath()) {}

ScratchKey::ScratchKey(HKEY hive, std::wstring path) : hive_(hive), path_(std::move(path)) {
  RegDeleteTreeW(hive_, path_.c_str());  // left by a crashed run
  Create(hive_, path_);
}

ScratchKey::~ScratchKey() { RegDeleteTreeW(hive_, path_.c_str()); }

void ScratchKey::AddSubkey(const std::wstring& subkey) const {
  Create(hive_, path_ + L"\\" + subkey);
}

void ScratchKey::SetText(const std::wstring& subkey, const wchar_t* value,
                         const std::wstring& text) const {
  SetBytes(subkey, value, REG_SZ,
           std::string(reinterpret_cast<const char*>(text.c_str()),
                       (text.size() + 1) * sizeof(wchar_t)));
}

void ScratchKey::SetBytes(const std::wstring& subkey, const wchar_t* value, DWORD type,
                          const std::string& bytes) const {
  const auto key = Create(hive_, path_ + L"\\" + subkey);
  // The system extends a text by a terminator that follows it in memory; "##" prevents that.
  const std::string guarded = bytes + "##";
  EXPECT_EQ(RegSetValueExW(key.get(), value, 0, type, reinterpret_cast<const BYTE*>(guarded.data()),
                           static_cast<DWORD>(bytes.size())),
            ERROR_SUCCESS);
}

}  // namespace TestSupport
