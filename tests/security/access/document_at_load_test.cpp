// What the library does when it is loaded: it makes the process's XML document, if it can.

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "platform/win32/owners.h"

namespace Zq::Gantry::Security {
namespace {

using Platform::UniqueModule;
using Platform::UniqueRegKey;

constexpr wchar_t kClassKey[] =
    L"Software\\Microsoft\\WindowsRuntime\\ActivatableClassId\\Windows.Data.Xml.Dom.XmlDocument";

/// Registers the stand-in as the server of XML documents, for as long as it lives.
class RegisteredDocuments {
 public:
  RegisteredDocuments() {
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, kClassKey, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                    nullptr, key_.out(), nullptr);
    const std::wstring path = StandinPath();
    RegSetValueExW(key_.get(), L"DllPath", 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()),
                   static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t)));
  }
  RegisteredDocuments(const RegisteredDocuments&) = delete;
  RegisteredDocuments& operator=(const RegisteredDocuments&) = delete;
  ~RegisteredDocuments() { RegDeleteKeyW(HKEY_LOCAL_MACHINE, kClassKey); }

 private:
  static std::wstring StandinPath() {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
    return path.substr(0, path.rfind(L'\\') + 1) + L"document_standin.dll";
  }

  UniqueRegKey key_;
};

/// How many documents the stand-in has made that still live; it makes none before it is loaded. The
/// runtime keeps it loaded once it has been asked.
int LiveDocuments() {
  const HMODULE standin = GetModuleHandleW(L"document_standin.dll");
  if (standin == nullptr) return 0;
  using Count = int (*)();
  const auto count =
      reinterpret_cast<Count>(reinterpret_cast<void*>(GetProcAddress(standin, "LiveDocuments")));
  return count == nullptr ? -1 : count();
}

bool IsLibraryLoaded() { return GetModuleHandleW(L"WattleafService.dll") != nullptr; }

TEST(DocumentAtLoad, IsMadeOnceAndReleasedWhenTheLibraryIsUnloaded) {
  const RegisteredDocuments registered;
  UniqueModule library(LoadLibraryW(L"WattleafService.dll"));
  ASSERT_TRUE(library);
  EXPECT_EQ(LiveDocuments(), 1);
  const UniqueModule standin(LoadLibraryW(L"document_standin.dll"));  // outlives the library
  library.reset();
  EXPECT_FALSE(IsLibraryLoaded());
  EXPECT_EQ(LiveDocuments(), 0);
}

TEST(DocumentAtLoad, IsOmittedWhenItsClassIsNotRegistered) {
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kClassKey);  // left behind by a run that crashed
  const UniqueModule library(LoadLibraryW(L"WattleafService.dll"));
  EXPECT_TRUE(library);
  EXPECT_TRUE(IsLibraryLoaded());
  EXPECT_EQ(LiveDocuments(), 0);
}

}  // namespace
}  // namespace Zq::Gantry::Security
