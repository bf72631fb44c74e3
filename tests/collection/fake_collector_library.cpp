#include "collection/fake_collector_library.h"

#include <windows.h>

#include <rpc.h>
#include <wincrypt.h>

#include <mscat.h>

#include <gtest/gtest.h>

namespace TestSupport {

namespace {

FakeCollectorLibrary* current = nullptr;

RPC_STATUS RPC_ENTRY NoCallActive(RPC_BINDING_HANDLE, void*) { return RPC_S_NO_CALL_ACTIVE; }

BOOL WINAPI NoCatalogs(HCATADMIN*, const GUID*, const wchar_t*, const CERT_STRONG_SIGN_PARA*,
                       DWORD) {
  SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
  return FALSE;
}

}  // namespace

FakeCollectorLibrary::FakeCollectorLibrary()
    : load_("LoadLibraryW", &Load),
      find_("GetProcAddress", &Find),
      free_("FreeLibrary", &Free),
      clientCall_("RpcServerInqCallAttributesW", &NoCallActive),
      catalogs_("CryptCATAdminAcquireContext2", &NoCatalogs) {
  current = this;
}

FakeCollectorLibrary::~FakeCollectorLibrary() { current = nullptr; }

HMODULE FakeCollectorLibrary::Module() { return reinterpret_cast<HMODULE>(0x5EED); }

HMODULE WINAPI FakeCollectorLibrary::Load(const wchar_t* name) {
  current->loaded.push_back(name);
  if (current->script.record != nullptr) current->script.record->Add("library load");
  return current->loads ? Module() : nullptr;
}

FARPROC WINAPI FakeCollectorLibrary::Find(HMODULE module, const char* name) {
  if (module != Module()) {
    return current->find_.Original<FARPROC WINAPI(HMODULE, const char*)>()(module, name);
  }
  EXPECT_STREQ(name, "CreateZQXExportClass");
  if (!current->exports) return nullptr;
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&Create));
}

BOOL WINAPI FakeCollectorLibrary::Free(HMODULE module) {
  EXPECT_EQ(module, Module());
  ++current->freed;
  current->script.Enter("free");
  return TRUE;
}

Zq::Gantry::Server::Services::Wattleaf::DataCollector* FakeCollectorLibrary::Create() {
  current->script.Enter("create");
  return current->createsNull ? nullptr : new FakeCollector(current->script);
}

std::wstring ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.find_last_of(L'\\'));
}

ProtectedFolder::ProtectedFolder(const wchar_t* sample) {
  // A test that crashed may have left the folder.
  EXPECT_TRUE(CreateDirectoryW(path_.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS);
  EXPECT_TRUE(CopyFileW((ProgramFolder() + L"\\collection-samples\\" + sample).c_str(),
                        File().c_str(), FALSE));
}

ProtectedFolder::~ProtectedFolder() {
  DeleteFileW(File().c_str());
  RemoveDirectoryW(path_.c_str());
}

}  // namespace TestSupport
