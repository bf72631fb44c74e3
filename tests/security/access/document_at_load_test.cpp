// Loading the library creates the XML document of the process, if the system can. A program of its
// own, since it must not link the library.

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "platform/win32/owners.h"
#include "support/program_folder.h"

namespace Zq::Gantry::Security {
namespace {

using Platform::UniqueModule;
using Platform::UniqueRegKey;

constexpr wchar_t kClassKey[] =
    L"Software\\Microsoft\\WindowsRuntime\\ActivatableClassId\\Windows.Data.Xml.Dom.XmlDocument";

/// Registers the stand-in as the server of XML documents while this object exists.
class RegisteredDocuments {
 public:
  RegisteredDocuments() {
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, kClassKey, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                    nullptr, key_.out(), nullptr);
    const std::wstring path = TestSupport::PathBesideProgram(L"document_standin.dll");
    RegSetValueExW(key_.get(), L"DllPath", 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()),
                   static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t)));
  }
  RegisteredDocuments(const RegisteredDocuments&) = delete;
  RegisteredDocuments& operator=(const RegisteredDocuments&) = delete;
  ~RegisteredDocuments() { RegDeleteKeyW(HKEY_LOCAL_MACHINE, kClassKey); }

 private:
  UniqueRegKey key_;
};

/// How many documents of the stand-in are alive; 0 before it is loaded. Once used, it stays loaded.
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
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kClassKey);  // a run that crashed may have left it
  const UniqueModule library(LoadLibraryW(L"WattleafService.dll"));
  EXPECT_TRUE(library);
  EXPECT_TRUE(IsLibraryLoaded());
  EXPECT_EQ(LiveDocuments(), 0);
}

}  // namespace
}  // namespace Zq::Gantry::Security
