#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <aclapi.h>

#include <gmock/gmock.h>

#include "security/trust/fake_path_calls.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

namespace Zq::Gantry::Security {
namespace {

using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::Error;
using TestSupport::Info;
using TestSupport::LogCapture;
using TestSupport::LogRecord;
using TestSupport::ScopedVariable;
using TestSupport::WarningsAndErrors;

constexpr wchar_t kWindows[] = L"C:\\Windows\\";
constexpr wchar_t kPrograms86[] = L"C:\\Program Files (x86)\\";
constexpr wchar_t kPrograms[] = L"C:\\Program Files\\";

LogRecord NotBelow(const std::wstring& path, const std::wstring& root) {
  return Error(
      L"Zq::Gantry::Security::ZQAuthenticodeHelper::IsPathAllowed - BeginsWith() failed [" + path +
      L"] [" + root + L"]");
}

LogRecord NoPackagedFolder(const std::wstring& path) {
  return Error(
      L"Zq::Gantry::Security::ZQAuthenticodeHelper::IsPathAllowed - Didn't find substring "
      L"[:\\WindowsApps\\] in [" +
      path + L"]");
}

int ownershipChecks = 0;

DWORD WINAPI CountOwnershipCheck(LPWSTR, SE_OBJECT_TYPE, SECURITY_INFORMATION, PSID*, PSID*, PACL*,
                                 PACL*, PSECURITY_DESCRIPTOR*) {
  ++ownershipChecks;
  return ERROR_FILE_NOT_FOUND;
}

class IsPathAllowed : public testing::Test {
 protected:
  IsPathAllowed() { ownershipChecks = 0; }

  void ExpectRefusedEverywhere(const std::wstring& path, const std::wstring& expanded) {
    log_.Clear();
    EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(path.c_str()));
    EXPECT_THAT(WarningsAndErrors(log_),
                ElementsAre(NotBelow(expanded, kWindows), NotBelow(expanded, kPrograms86),
                            NotBelow(expanded, kPrograms), NoPackagedFolder(expanded)));
    EXPECT_EQ(ownershipChecks, 0);
  }

  const TestSupport::FixedRoots roots_{};
  const TestSupport::FakeRpcQuery rpc_;
  LogCapture log_;

 private:
  const ImportPatch security_{"GetNamedSecurityInfoW", &CountOwnershipCheck};
};

TEST_F(IsPathAllowed, AllowsAPathBelowARootInAnyCase) {
  for (const wchar_t* path :
       {L"C:\\Windows\\a.dll", L"c:\\wINDOWS\\System32\\a.dll", L"C:\\PROGRAM FILES (X86)\\a.dll",
        L"c:\\program files\\x\\a.dll", L"%windir%\\a.dll", L"%ProgramFiles%\\x\\a.dll"}) {
    EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(path));
  }
  EXPECT_EQ(ownershipChecks, 0);
}

TEST_F(IsPathAllowed, StopsAtTheFirstMatchingRoot) {
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"C:\\Windows\\a.dll"));
  EXPECT_THAT(
      log_.Records(),
      ElementsAre(Info(L"ExpandEnvironmentStrings: [C:\\Windows\\a.dll] [C:\\Windows\\a.dll]"),
                  Info(L"GetFullPathName: [C:\\Windows\\a.dll]"),
                  Info(L"ExpandEnvironmentStrings: [%windir%\\] [C:\\Windows\\]"),
                  Info(L"GetFullPathName: [C:\\Windows\\]")));
}

TEST_F(IsPathAllowed, LogsOneErrorForEachRootBeforeTheMatchingOne) {
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"C:\\Program Files\\a.dll"));
  EXPECT_THAT(WarningsAndErrors(log_),
              ElementsAre(NotBelow(L"C:\\Program Files\\a.dll", kWindows),
                          NotBelow(L"C:\\Program Files\\a.dll", kPrograms86)));
}

TEST_F(IsPathAllowed, RefusesASiblingThatExtendsARootsName) {
  ExpectRefusedEverywhere(L"C:\\Windows2\\a.dll", L"C:\\Windows2\\a.dll");
  ExpectRefusedEverywhere(L"C:\\Program Files 2\\a.dll", L"C:\\Program Files 2\\a.dll");
  ExpectRefusedEverywhere(L"C:\\Windows", L"C:\\Windows");
}

TEST_F(IsPathAllowed, RefusesAPathThatLeavesARoot) {
  ExpectRefusedEverywhere(L"%windir%\\..\\Users\\a.dll", L"C:\\Users\\a.dll");
}

TEST_F(IsPathAllowed, RefusesAPackagedFolderInLowerCase) {
  ExpectRefusedEverywhere(L"D:\\windowsapps\\x\\a.exe", L"D:\\windowsapps\\x\\a.exe");
}

TEST_F(IsPathAllowed, LogsAPathWithFormatCharactersUnchanged) {
  ExpectRefusedEverywhere(L"D:\\100%n %s\\a.dll", L"D:\\100%n %s\\a.dll");
}

TEST_F(IsPathAllowed, RefusesAPackagedFolderThatIsNotAtADrivesRoot) {
  ExpectRefusedEverywhere(L"D:\\Deep\\WindowsApps\\x\\a.exe", L"D:\\Deep\\WindowsApps\\x\\a.exe");
}

TEST_F(IsPathAllowed, RefusesAPathThatCannotBeExpanded) {
  const std::wstring path = L"C:\\Windows\\" + std::wstring(300, L'a');
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(path.c_str()));
  const std::vector<LogRecord> records = WarningsAndErrors(log_);
  ASSERT_EQ(records.size(), 6U);  // the first two are the warnings of the expansion
  EXPECT_EQ(records[2], NotBelow(L"", kWindows));
  EXPECT_EQ(records[3], NotBelow(L"", kPrograms86));
  EXPECT_EQ(records[4], NotBelow(L"", kPrograms));
  EXPECT_EQ(records[5], NoPackagedFolder(L""));
}

TEST_F(IsPathAllowed, RefusesANullPath) {
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(nullptr));
  EXPECT_THAT(WarningsAndErrors(log_),
              ElementsAre(TestSupport::Warning(
                              L"class Zq::Gantry::Server::Services::UtilHelper.NullChecker - "
                              L"filePath cannot be null"),
                          NotBelow(L"", kWindows), NotBelow(L"", kPrograms86),
                          NotBelow(L"", kPrograms), NoPackagedFolder(L"")));
}

TEST_F(IsPathAllowed, AllowsEveryPathWhenARootCannotBeExpanded) {
  static decltype(&ExpandEnvironmentStringsW) real = nullptr;
  const ImportPatch expand(
      "ExpandEnvironmentStringsW", +[](LPCWSTR text, LPWSTR result, DWORD chars) -> DWORD {
        return text == std::wstring(L"%PROGRAMFILES%\\") ? 0 : real(text, result, chars);
      });
  real = expand.Original<std::remove_pointer_t<decltype(real)>>();
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"D:\\Users\\someone\\a.dll"));
  EXPECT_EQ(ownershipChecks, 0);
}

TEST_F(IsPathAllowed, AllowsEveryPathWhenARootHasNoFullPath) {
  static decltype(&GetFullPathNameW) real = nullptr;
  const ImportPatch full(
      "GetFullPathNameW", +[](LPCWSTR text, DWORD chars, LPWSTR result, LPWSTR* name) -> DWORD {
        return text == std::wstring(kWindows) ? 0 : real(text, chars, result, name);
      });
  real = full.Original<std::remove_pointer_t<decltype(real)>>();
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"D:\\Users\\someone\\a.dll"));
}

// What an allowed place does not guarantee.

TEST_F(IsPathAllowed, AllowsWindowsTempWhereOrdinaryUsersCanWrite) {
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"C:\\Windows\\Temp\\a.dll"));
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"C:\\Windows\\Temp\\deep\\below\\a.dll"));
  EXPECT_EQ(ownershipChecks, 0);
}

TEST_F(IsPathAllowed, AllowsAPathOfAMissingFile) {
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"C:\\Windows\\no such folder\\a.dll"));
  EXPECT_EQ(ownershipChecks, 0);
}

TEST_F(IsPathAllowed, AllowsAFolderNamedLikeAnUnsetRootVariable) {
  const ScopedVariable unset(L"ProgramFiles(x86)", nullptr);
  wchar_t before[MAX_PATH] = {};
  GetCurrentDirectoryW(MAX_PATH, before);
  const TestSupport::TempFolder current;
  ASSERT_TRUE(SetCurrentDirectoryW(current.Path().c_str()));
  const std::wstring named = current.File(L"%PROGRAMFILES(x86)%\\a.dll");
  const bool isNamedAllowed = ZQAuthenticodeHelper::IsPathAllowed(named.c_str());
  const bool isRelativeAllowed = ZQAuthenticodeHelper::IsPathAllowed(L"%PROGRAMFILES(x86)%\\a.dll");
  const bool isBesideAllowed = ZQAuthenticodeHelper::IsPathAllowed(current.File(L"a.dll").c_str());
  SetCurrentDirectoryW(before);
  EXPECT_TRUE(isNamedAllowed);
  EXPECT_TRUE(isRelativeAllowed);
  EXPECT_FALSE(isBesideAllowed);
  EXPECT_EQ(ownershipChecks, 0);
}

TEST_F(IsPathAllowed, ExpandsTheRootsAnewOnEachCall) {
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(L"E:\\System\\a.dll"));
  const ScopedVariable moved(L"windir", L"E:\\System");
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"E:\\System\\a.dll"));
}

TEST_F(IsPathAllowed, QueriesTheClientForEachExpansion) {
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(L"E:\\a.dll"));
  EXPECT_EQ(rpc_.Questions().size(), 4U);  // the path and three roots
}

// While the thread serves a client, the client's variables define the roots, not those of this
// process.

class IsPathAllowedForClient : public testing::Test {
 protected:
  /// The client's environment sets %windir% to a folder of its own.
  static BOOL WINAPI ExpandForClient(HANDLE, LPCWSTR text, LPWSTR result, DWORD chars) {
    std::wstring path = text;
    const std::wstring variable = L"%windir%";
    if (path.rfind(variable, 0) == 0) path.replace(0, variable.size(), L"D:\\Users\\someone");
    wcscpy_s(result, chars, path.c_str());
    return TRUE;
  }

  const TestSupport::FixedRoots roots_{};
  const TestSupport::FakeRpcQuery rpc_ =
      TestSupport::FakeRpcQuery::ServingClient(GetCurrentProcessId());
  const LogCapture log_;
};

TEST_F(IsPathAllowedForClient, UsesTheVariablesOfTheClient) {
  const ImportPatch expand("ExpandEnvironmentStringsForUserW", &ExpandForClient);
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"D:\\Users\\someone\\a.dll"));
  EXPECT_FALSE(ZQAuthenticodeHelper::IsPathAllowed(L"C:\\Windows\\a.dll"));
}

TEST_F(IsPathAllowedForClient, AllowsEveryPathWhenTheClientsProcessCannotBeOpened) {
  const ImportPatch open(
      "OpenProcess", +[](DWORD, BOOL, DWORD) -> HANDLE { return nullptr; });
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"D:\\Users\\someone\\a.dll"));
}

TEST_F(IsPathAllowedForClient, AllowsEveryPathWhenTheClientsTokenCannotBeOpened) {
  const ImportPatch token(
      "OpenProcessToken", +[](HANDLE, DWORD, HANDLE*) -> BOOL { return FALSE; });
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"D:\\Users\\someone\\a.dll"));
}

TEST_F(IsPathAllowedForClient, AllowsEveryPathWhenTheClientsVariablesCannotBeExpanded) {
  const ImportPatch expand(
      "ExpandEnvironmentStringsForUserW",
      +[](HANDLE, LPCWSTR, LPWSTR, DWORD) -> BOOL { return FALSE; });
  EXPECT_TRUE(ZQAuthenticodeHelper::IsPathAllowed(L"D:\\Users\\someone\\a.dll"));
}

}  // namespace
}  // namespace Zq::Gantry::Security
