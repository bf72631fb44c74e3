// On a thread that serves a client. Every system call that identifies the client is faked.

#include "security/facade/zq_authenticode_facade.h"

#include <windows.h>

#include <rpc.h>

#include <gmock/gmock.h>

#include "security/access/judged_files.h"

namespace Zq::Gantry::Security {
namespace {

using Standin::ImportPatch;
using TestSupport::JudgedFiles;

constexpr DWORD kClient = 4321;

/// What the faked calls return.
struct Caller {
  std::wstring family = L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pa";
  HANDLE process = reinterpret_cast<HANDLE>(0x1111);
  RPC_STATUS impersonated = RPC_S_OK;
  LONG named = 0;
  int impersonations = 0;
  int reverts = 0;
};

Caller* caller = nullptr;

HANDLE WINAPI Open(DWORD, BOOL, DWORD client) {
  return client == kClient ? caller->process : nullptr;
}

BOOL WINAPI OpenToken(HANDLE, DWORD, HANDLE* token) {
  *token = reinterpret_cast<HANDLE>(0x2222);
  return TRUE;
}

BOOL WINAPI ExpandForClient(HANDLE, LPCWSTR text, LPWSTR result, DWORD chars) {
  return ExpandEnvironmentStringsW(text, result, chars) != 0;
}

RPC_STATUS RPC_ENTRY Impersonate(RPC_BINDING_HANDLE) {
  if (caller->impersonated == RPC_S_OK) ++caller->impersonations;
  return caller->impersonated;
}

RPC_STATUS RPC_ENTRY Revert() {
  ++caller->reverts;
  return RPC_S_OK;
}

LONG WINAPI NameOf(HANDLE, UINT32* length, PWSTR name) {
  const auto needed = static_cast<UINT32>(caller->family.size() + 1);
  const bool fits = name != nullptr && *length >= needed;
  *length = needed;
  if (!fits) return ERROR_INSUFFICIENT_BUFFER;
  caller->family.copy(name, needed);
  name[needed - 1] = L'\0';
  return caller->named;
}

BOOL WINAPI IgnoreClose(HANDLE) { return TRUE; }

class IsToolLaunchAllowed : public testing::Test {
 protected:
  IsToolLaunchAllowed() {
    caller = &caller_;
    files_.SignAll(kVerified, "30 0a");
  }
  ~IsToolLaunchAllowed() override { caller = nullptr; }

  [[nodiscard]] bool MayStart(const std::wstring& tool) {
    return facade_.IsToolLaunchAllowed((L"%windir%\\System32\\" + tool).c_str(), true, L"", L"");
  }

  Caller caller_;
  JudgedFiles files_{kClient};
  ZQAuthenticodeFacade facade_;

 private:
  ImportPatch open_{"OpenProcess", &Open};
  ImportPatch openToken_{"OpenProcessToken", &OpenToken};
  ImportPatch expand_{"ExpandEnvironmentStringsForUserW", &ExpandForClient};
  ImportPatch impersonate_{"RpcImpersonateClient", &Impersonate};
  ImportPatch revert_{"RpcRevertToSelf", &Revert};
  ImportPatch name_{"GetPackageFamilyName", &NameOf};
  ImportPatch close_{"CloseHandle", &IgnoreClose};
};

}  // namespace

TEST_F(IsToolLaunchAllowed, AllowsTheListedApplicationEachListedToolAndNoOther) {
  for (const wchar_t* tool :
       {L"regsvr32.exe", L"DISM.exe", L"sfc.exe", L"rundll32.exe", L"mmc.exe", L"rstrui.exe"}) {
    EXPECT_TRUE(MayStart(tool)) << tool;
  }
  EXPECT_EQ(caller_.impersonations, 6);
  EXPECT_EQ(caller_.reverts, 6);
  EXPECT_FALSE(MayStart(L"cmd.exe"));
  EXPECT_EQ(caller_.impersonations, 6);
}

TEST_F(IsToolLaunchAllowed, RefusesAnotherApplication) {
  caller_.family = L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9pa";
  EXPECT_FALSE(MayStart(L"sfc.exe"));
  EXPECT_EQ(caller_.reverts, 1);
}

TEST_F(IsToolLaunchAllowed, RefusesAClientThatCannotBeIdentified) {
  caller_.impersonated = RPC_S_ACCESS_DENIED;
  EXPECT_FALSE(MayStart(L"sfc.exe"));
  caller_.impersonated = RPC_S_OK;
  caller_.named = ERROR_ACCESS_DENIED;
  EXPECT_FALSE(MayStart(L"sfc.exe"));
  caller_.named = 0;
  ASSERT_TRUE(MayStart(L"sfc.exe"));
  caller_.process = nullptr;
  EXPECT_FALSE(MayStart(L"sfc.exe"));
}

TEST_F(IsToolLaunchAllowed, JudgesTheCommandLineAndLogsTheComponent) {
  files_.SignAllForTheService();
  const auto mayStart = [this](const wchar_t* line) {
    return facade_.IsToolLaunchAllowed(L"%windir%\\System32\\regsvr32.exe", false, line, L"host");
  };
  EXPECT_TRUE(mayStart(L"/s C:\\Windows\\good.dll"));
  EXPECT_EQ(files_.log.Records().front().component, L"host");
  EXPECT_FALSE(mayStart(L"/s D:\\bad.dll"));
}

TEST_F(IsToolLaunchAllowed, StillRefusesWhenACallFails) {
  const auto nothing = +[]() -> ULONG_PTR { return 0; };
  const auto failure = +[]() -> ULONG_PTR { return ERROR_ACCESS_DENIED; };
  struct Failing {
    const char* call;
    ULONG_PTR (*answer)();
  };
  const Failing rows[] = {{"RpcServerInqCallAttributesW", failure},
                          {"OpenProcess", nothing},
                          {"OpenProcessToken", nothing},
                          {"ExpandEnvironmentStringsForUserW", nothing},
                          {"GetFullPathNameW", nothing},
                          {"DuplicateHandle", nothing},
                          {"RpcImpersonateClient", failure},
                          {"RpcRevertToSelf", failure},
                          {"GetPackageFamilyName", failure},
                          {"CloseHandle", nothing},
                          {"CommandLineToArgvW", nothing},
                          {"LocalFree", failure}};
  const auto mayStart = [this] {
    return facade_.IsToolLaunchAllowed(L"%windir%\\System32\\regsvr32.exe", false,
                                       L"C:\\Windows\\a.dll", L"");
  };
  files_.SignAllForTheService();
  ASSERT_TRUE(mayStart());
  for (const Failing& row : rows) {
    const ImportPatch patch(row.call, row.answer);
    caller_.family = L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9pa";
    EXPECT_FALSE(mayStart()) << row.call << ", another application";
    caller_.family = L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pa";
    files_.SignAll(kVerified, "30 0a");
    EXPECT_FALSE(mayStart()) << row.call << ", a file signed with another key";
    files_.SignAll(kUntrustedRoot, ServiceTrustedKeys.front());
    EXPECT_FALSE(mayStart()) << row.call << ", an untrusted root";
    files_.SignAllForTheService();
  }
}

}  // namespace Zq::Gantry::Security
