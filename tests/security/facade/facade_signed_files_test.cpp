// The facade on files that the build has signed, with the system's own calls. Only catalogs, the
// client and the verdict on the root, which no machine trusts, are faked.

#include "security/facade/zq_authenticode_facade.h"

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <gtest/gtest.h>

#include "import_patch.h"
#include "security/access/tool_launch.h"
#include "security/trust/fake_catalogs.h"
#include "security/trust/fake_path_calls.h"
#include "security/trust/signer_descriptor.h"
#include "support/log_capture.h"
#include "support/program_folder.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;

namespace {

std::wstring SampleFolder() { return PathBesideProgram(L"trust-samples"); }

std::wstring Sample(const std::wstring& name) { return SampleFolder() + L"\\" + name; }

decltype(&WinVerifyTrust) realWinVerifyTrust = nullptr;

// The verdict on a valid signature under the root that the build has made.
LONG verdictOfRoot = 0;

LONG WINAPI RootJudgingWinVerifyTrust(HWND window, GUID* action, LPVOID pointer) {
  const LONG real = realWinVerifyTrust(window, action, pointer);
  return IsListedResult(static_cast<std::uint32_t>(real)) ? verdictOfRoot : real;
}

class FacadeOnSignedFiles : public testing::Test {
 protected:
  FacadeOnSignedFiles() {
    realWinVerifyTrust = patch_.Original<std::remove_pointer_t<decltype(&WinVerifyTrust)>>();
    verdictOfRoot = static_cast<LONG>(kUntrustedRoot);
  }

  Standin::ImportPatch patch_{"WinVerifyTrust", &RootJudgingWinVerifyTrust};
  // The folder of the samples is an allowed place during the test.
  ScopedVariable windows_{L"windir", SampleFolder().c_str()};
  ScopedVariable programs86_{L"ProgramFiles(x86)", L"C:\\Program Files (x86)"};
  ScopedVariable programs_{L"ProgramFiles", L"C:\\Program Files"};
  FakeCatalogs catalogs_;
  FakeRpcQuery rpc_;
  LogCapture log_;
  ZQAuthenticodeFacade facade_;
};

class FacadeOnSignedFilesOfKnownRoots : public FacadeOnSignedFiles {
 protected:
  FacadeOnSignedFilesOfKnownRoots() { verdictOfRoot = 0; }

  bool MayStart(const wchar_t* tool, const wchar_t* line) {
    const ToolLaunchRules table = {{Sample(tool), {{}, true, nullptr}}};
    return IsLaunchAllowedBy(table, {Sample(tool).c_str(), false, line, L""},
                             [] { return std::wstring(); });
  }
};

}  // namespace

TEST_F(FacadeOnSignedFilesOfKnownRoots, TrustsTheDevelopmentKeyInADevelopmentBuildOnly) {
  const bool isDevelopment = std::string(WATTLEAF_KEYS_OF_THIS_BUILD) == "development";
  EXPECT_EQ(facade_.IsServiceFileTrusted(Sample(L"signed.dll").c_str()), isDevelopment);
  EXPECT_EQ(facade_.IsServiceFileTrusted(Sample(L"nested.dll").c_str()), isDevelopment);
  EXPECT_FALSE(facade_.IsServiceFileTrusted(Sample(L"other.dll").c_str()));
  EXPECT_FALSE(facade_.IsServiceFileTrusted(Sample(L"unsigned.dll").c_str()));
  EXPECT_FALSE(facade_.IsExtendedFileTrusted(Sample(L"signed.dll").c_str()));
}

TEST_F(FacadeOnSignedFiles, RefusesASelfMadeRoot) {
  EXPECT_FALSE(facade_.IsServiceFileTrusted(Sample(L"signed.dll").c_str()));
  EXPECT_FALSE(facade_.IsWindowsTrustedFileAllowed(Sample(L"signed.dll").c_str()));
}

TEST_F(FacadeOnSignedFilesOfKnownRoots, AcceptsSignedFilesAndRefusesUnsignedAndChangedOnes) {
  EXPECT_TRUE(facade_.IsWindowsTrustedFileAllowed(Sample(L"signed.dll").c_str()));
  EXPECT_TRUE(facade_.IsWindowsTrustedFileAllowed(Sample(L"other.dll").c_str()));
  EXPECT_FALSE(facade_.IsWindowsTrustedFileAllowed(Sample(L"unsigned.dll").c_str()));

  const TempFolder folder;
  const ScopedVariable place(L"windir", folder.Path().c_str());
  std::string bytes = ReadWholeFile(Sample(L"signed.dll"));
  bytes.at(2048) = static_cast<char>(bytes.at(2048) ^ 0x01);
  WriteWholeFile(folder.File(L"changed.dll"), bytes);
  EXPECT_FALSE(facade_.IsWindowsTrustedFileAllowed(folder.File(L"changed.dll").c_str()));
}

TEST_F(FacadeOnSignedFiles, FindsTheSameKeyInFilesOfOneUntrustedSigner) {
  EXPECT_TRUE(
      facade_.HaveSameSigningKey(Sample(L"other.dll").c_str(), Sample(L"other.dll").c_str()));
  EXPECT_TRUE(
      facade_.HaveSameSigningKey(Sample(L"signed.dll").c_str(), Sample(L"nested.dll").c_str()));
  EXPECT_FALSE(
      facade_.HaveSameSigningKey(Sample(L"signed.dll").c_str(), Sample(L"other.dll").c_str()));
  EXPECT_FALSE(
      facade_.HaveSameSigningKey(Sample(L"unsigned.dll").c_str(), Sample(L"unsigned.dll").c_str()));
}

TEST_F(FacadeOnSignedFilesOfKnownRoots, RefusesAnotherSignersFileAsDropbox) {
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(Sample(L"signed.dll").c_str()));
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(Sample(L"unsigned.dll").c_str()));
}

TEST_F(FacadeOnSignedFilesOfKnownRoots, AllowsAToolOfAnySigner) {
  EXPECT_TRUE(MayStart(L"other.dll", L""));
  EXPECT_FALSE(MayStart(L"unsigned.dll", L""));
  EXPECT_FALSE(MayStart(L"missing.dll", L""));
}

TEST_F(FacadeOnSignedFiles, RefusesToStartAToolUnderASelfMadeRoot) {
  const ToolLaunchRules table = {{Sample(L"signed.dll"), {{}, true, nullptr}}};
  EXPECT_FALSE(IsLaunchAllowedBy(table, {Sample(L"signed.dll").c_str(), false, L"", L""},
                                 [] { return std::wstring(); }));
}
