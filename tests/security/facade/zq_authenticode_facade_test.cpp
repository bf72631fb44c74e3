#include "security/facade/zq_authenticode_facade.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <stdexcept>
#include <type_traits>
#include <utility>

#include "security/access/judged_files.h"
#include "security/trust/zq_authenticode_helper.h"
#include "support/temp_folder.h"

namespace Zq::Gantry::Security {
namespace {

using TestSupport::JudgedFiles;
using TestSupport::kElsewhere;
using TestSupport::kProtected;

class AuthenticodeFacade : public testing::Test {
 protected:
  JudgedFiles files_;
  ZQAuthenticodeFacade facade_;
};

TEST_F(AuthenticodeFacade, HasNoData) {
  EXPECT_EQ(sizeof(ZQAuthenticodeFacade), sizeof(void*));
  EXPECT_EQ(sizeof(ZQAuthenticodeFacadeBase), sizeof(void*));
  EXPECT_FALSE(std::has_virtual_destructor_v<ZQAuthenticodeFacade>);
}

TEST_F(AuthenticodeFacade, TrustsAServiceFileWithTheServicesKeyInAnAllowedPlace) {
  files_.SignAllForTheService();
  EXPECT_TRUE(facade_.IsServiceFileTrusted(kProtected));
  EXPECT_FALSE(facade_.IsServiceFileTrusted(kElsewhere));
  files_.SignAll(kVerified, PublicKeyPool.at(24));
  EXPECT_TRUE(facade_.IsServiceFileTrusted(kProtected));
  files_.SignAll(kVerified, PublicKeyPool.at(26));
  EXPECT_FALSE(facade_.IsServiceFileTrusted(kProtected));
}

TEST_F(AuthenticodeFacade, TrustsAnExtendedFileWithAnExtendedKeyInAProtectedPlace) {
  files_.SignAll(kVerified, PublicKeyPool.at(26));
  EXPECT_TRUE(facade_.IsExtendedFileTrusted(kProtected));
  EXPECT_FALSE(facade_.IsExtendedFileTrusted(kElsewhere));
  files_.SignAll(kVerified, PublicKeyPool.at(24));
  EXPECT_FALSE(facade_.IsExtendedFileTrusted(kProtected));
}

TEST_F(AuthenticodeFacade, ChecksThePlaceOnlyAfterTheSignature) {
  EXPECT_FALSE(facade_.IsServiceFileTrusted(kProtected));
  EXPECT_FALSE(facade_.IsExtendedFileTrusted(kProtected));
  EXPECT_FALSE(facade_.IsWindowsTrustedFileAllowed(kProtected));
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(kProtected));
  EXPECT_TRUE(files_.NoPlaceWasChecked());
}

TEST_F(AuthenticodeFacade, AcceptsAWindowsTrustedFileWithAnyKey) {
  files_.SignAll(kVerified, "30 0a");
  EXPECT_TRUE(facade_.IsWindowsTrustedFileAllowed(kProtected));
  EXPECT_FALSE(facade_.IsWindowsTrustedFileAllowed(kElsewhere));
  files_.SignAll(kVerifiedButExpired, "30 0a");
  EXPECT_TRUE(facade_.IsWindowsTrustedFileAllowed(kProtected));
  files_.SignAll(kUntrustedRoot, ServiceTrustedKeys.front());
  EXPECT_FALSE(facade_.IsWindowsTrustedFileAllowed(kProtected));
}

TEST_F(AuthenticodeFacade, RefusesNullPaths) {
  files_.SignAllForTheService();
  EXPECT_FALSE(facade_.IsServiceFileTrusted(nullptr));
  EXPECT_FALSE(facade_.IsExtendedFileTrusted(nullptr));
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(nullptr));
  EXPECT_FALSE(facade_.IsWindowsTrustedFileAllowed(nullptr));
  EXPECT_FALSE(facade_.HaveSameSigningKey(nullptr, kProtected));
  EXPECT_FALSE(facade_.HaveSameSigningKey(kProtected, nullptr));
  EXPECT_FALSE(facade_.HaveSameSigningKey(nullptr, nullptr));
  EXPECT_FALSE(facade_.IsPathAllowed(nullptr));
  EXPECT_FALSE(facade_.IsToolLaunchAllowed(nullptr, false, nullptr, nullptr));
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(AuthenticodeFacade, FindsTheSameKeyInTrustedAndUntrustedFilesAnywhere) {
  for (const std::uint32_t verdict : {kVerified, kVerifiedButExpired, kUntrustedRoot}) {
    files_.SignAll(verdict, "30 0a");
    EXPECT_TRUE(facade_.HaveSameSigningKey(kElsewhere, kElsewhere));
    EXPECT_TRUE(facade_.HaveSameSigningKey(kElsewhere, kProtected));
  }
  EXPECT_TRUE(files_.NoPlaceWasChecked());
}

TEST_F(AuthenticodeFacade, FindsNoSameKeyInAnUnsignedFile) {
  EXPECT_FALSE(facade_.HaveSameSigningKey(kProtected, kProtected));
}

TEST_F(AuthenticodeFacade, FindsNoSameKeyWhenTheKeysCannotBeRead) {
  files_.SignAll(kVerified, "30 0a");
  files_.trust.hideSigner = true;
  EXPECT_FALSE(facade_.HaveSameSigningKey(kProtected, kProtected));
  EXPECT_EQ(ZQAuthenticodeHelper::GetAllSignatures(kProtected).size(), 1U);
}

TEST_F(AuthenticodeFacade, AcceptsSignaturesThroughCatalogs) {
  const TestSupport::TempFolder folder;
  const TestSupport::ScopedVariable place(L"windir", folder.Path().c_str());
  const std::wstring path = folder.File(L"listed.dll");
  TestSupport::WriteWholeFile(path, "content");
  files_.catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
  files_.SignAllForTheService();
  files_.trust.byCatalog = std::move(files_.trust.embedded);
  files_.trust.embedded.clear();
  EXPECT_TRUE(facade_.IsServiceFileTrusted(path.c_str()));
  EXPECT_TRUE(facade_.IsWindowsTrustedFileAllowed(path.c_str()));
  EXPECT_TRUE(facade_.HaveSameSigningKey(path.c_str(), path.c_str()));
  const std::wstring missing = folder.File(L"missing.dll");
  EXPECT_FALSE(facade_.HaveSameSigningKey(path.c_str(), missing.c_str()));
  EXPECT_FALSE(facade_.HaveSameSigningKey(missing.c_str(), path.c_str()));
  files_.trust.byCatalog.front().key = JudgedFiles::KeyBytes(PublicKeyPool.at(26));
  EXPECT_TRUE(facade_.IsExtendedFileTrusted(path.c_str()));
}

TEST_F(AuthenticodeFacade, ChecksAPlaceWithoutReadingSignatures) {
  EXPECT_TRUE(facade_.IsPathAllowed(kProtected));
  EXPECT_TRUE(facade_.IsPathAllowed(L"%windir%\\x"));
  EXPECT_FALSE(facade_.IsPathAllowed(kElsewhere));
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(AuthenticodeFacade, AllowsNoToolToACallerOutsideAPackage) {
  files_.SignAllForTheService();
  for (const wchar_t* tool :
       {L"regsvr32.exe", L"DISM.exe", L"sfc.exe", L"rundll32.exe", L"mmc.exe", L"rstrui.exe"}) {
    const std::wstring path = std::wstring(L"%windir%\\System32\\") + tool;
    EXPECT_FALSE(facade_.IsToolLaunchAllowed(path.c_str(), false, L"", L"")) << path;
  }
  EXPECT_TRUE(files_.trust.calls.empty());
}

TEST_F(AuthenticodeFacade, LetsExceptionsPropagateExceptForDropbox) {
  files_.SignAllForTheService();
  files_.trust.embedded.front().key.clear();
  EXPECT_THROW(facade_.IsServiceFileTrusted(kProtected), std::out_of_range);
  EXPECT_THROW(facade_.IsWindowsTrustedFileAllowed(kProtected), std::out_of_range);
  EXPECT_THROW(facade_.HaveSameSigningKey(kProtected, kProtected), std::out_of_range);
}

// When a root cannot be expanded, every place is allowed (test
// IsPathAllowed.AllowsEveryPathWhenARootCannotBeExpanded), so the signatures must be refused here.
TEST_F(AuthenticodeFacade, StillRefusesWhenACallFails) {
  const TestSupport::TempFolder folder;
  const TestSupport::ScopedVariable place(L"windir", folder.Path().c_str());
  const std::wstring path = folder.File(L"judged.dll");
  TestSupport::WriteWholeFile(path, "content");
  files_.catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
  // Each call returns zero or null.
  const auto fail = +[]() -> ULONG_PTR {
    SetLastError(ERROR_ACCESS_DENIED);
    return 0;
  };
  struct Refused {
    std::uint32_t verdict;
    std::string key;
    bool acceptedByWindows;
  };
  const Refused rows[] = {{0x800B0100, ServiceTrustedKeys.front(), false},
                          {0x80096010, ServiceTrustedKeys.front(), false},
                          {kUntrustedRoot, ServiceTrustedKeys.front(), false},
                          {kVerified, "30 0a", true},
                          {kVerifiedButExpired, "30 0a", true}};
  for (const Refused& row : rows) {
    files_.SignAll(row.verdict, row.key);
    files_.trust.byCatalog = files_.trust.embedded;
    ASSERT_EQ(facade_.IsWindowsTrustedFileAllowed(path.c_str()), row.acceptedByWindows);
    for (const char* call :
         {"CryptCATAdminAcquireContext2", "CreateFileW", "GetFileType",
          "CryptCATAdminCalcHashFromFileHandle2", "CryptCATAdminEnumCatalogFromHash",
          "CryptCATCatalogInfoFromContext", "WTHelperProvDataFromStateData",
          "WTHelperGetProvSignerFromChain", "WTHelperGetProvCertFromChain", "CertNameToStrW",
          "ExpandEnvironmentStringsW", "GetFullPathNameW"}) {
      const Standin::ImportPatch patch(call, fail);
      EXPECT_FALSE(facade_.IsServiceFileTrusted(path.c_str())) << call;
      EXPECT_FALSE(facade_.IsExtendedFileTrusted(path.c_str())) << call;
      EXPECT_FALSE(facade_.IsDropboxFileTrusted(path.c_str())) << call;
      if (row.acceptedByWindows) continue;
      EXPECT_FALSE(facade_.IsWindowsTrustedFileAllowed(path.c_str())) << call;
      if (row.verdict == kUntrustedRoot) continue;
      EXPECT_FALSE(facade_.HaveSameSigningKey(path.c_str(), path.c_str())) << call;
    }
  }
}

}  // namespace
}  // namespace Zq::Gantry::Security
