#include "security/trust/zq_authenticode_helper.h"

#include <gtest/gtest.h>

#include <cstring>

#include "security/trust/catalog_member.h"
#include "security/trust/fake_catalogs.h"
#include "security/trust/wintrust_layout.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

// The fake hash 00, 07, 0E, ... D9 in upper case, worked out by hand.
const wchar_t* const kFakeTag = L"00070E151C232A31383F464D545B626970777E858C939AA1A8AFB6BDC4CBD2D9";

class GetSecurityCatalogInfo : public testing::Test {
 protected:
  GetSecurityCatalogInfo() {
    WriteWholeFile(path_, "content");
    catalogs_.catalogs = {L"C:\\catalogs\\first.cat", L"C:\\catalogs\\second.cat"};
    std::memset(&data_, 0x5A, sizeof(data_));
    std::memset(&untouched_, 0x5A, sizeof(untouched_));
  }

  [[nodiscard]] std::int32_t FindCatalog() {
    return Helper::GetSecurityCatalogInfo(path_.c_str(), data_);
  }

  // The result is 0, nothing is open, `data_` is unchanged, and the log is the first line and
  // `lines`.
  void ExpectRefusal(const std::vector<LogRecord>& lines) {
    EXPECT_EQ(FindCatalog(), 0);
    EXPECT_EQ(std::memcmp(&data_, &untouched_, sizeof(data_)), 0);
    EXPECT_EQ(catalogs_.openContexts, 0);
    EXPECT_EQ(catalogs_.openCatalogs, 0);
    std::vector<LogRecord> expected = {FirstLine()};
    expected.insert(expected.end(), lines.begin(), lines.end());
    EXPECT_EQ(log_.Records(), expected);
  }

  LogRecord FirstLine() const {
    return Info(L"Security - GetSecurityCatalogInfo - File = " + path_);
  }

  TempFolder folder_;
  std::wstring path_ = folder_.File(L"listed %s.exe");
  FakeCatalogs catalogs_;
  LogCapture log_;
  VerificationData data_;
  VerificationData untouched_;
};

}  // namespace

TEST_F(GetSecurityCatalogInfo, FillsTheDataForAListedFile) {
  ASSERT_EQ(FindCatalog(), 1);
  const UniqueCatalogInfo info(data_.pCatalog);
  EXPECT_EQ(data_.cbStruct, 88u);
  EXPECT_EQ(data_.pPolicyCallbackData, nullptr);
  EXPECT_EQ(data_.pSIPClientData, nullptr);
  EXPECT_EQ(data_.dwUIChoice, 2u);
  EXPECT_EQ(data_.fdwRevocationChecks, 0u);
  EXPECT_EQ(data_.dwUnionChoice, 2u);
  EXPECT_EQ(data_.dwStateAction, 1u);
  EXPECT_EQ(data_.hWVTStateData, nullptr);
  EXPECT_EQ(data_.pwszURLReference, nullptr);
  EXPECT_EQ(data_.dwProvFlags, 0u);
  EXPECT_EQ(data_.dwUIContext, 0u);
  EXPECT_EQ(log_.Records(), (std::vector<LogRecord>{FirstLine()}));
}

TEST_F(GetSecurityCatalogInfo, DescribesTheFileAsAMemberOfItsFirstCatalog) {
  ASSERT_EQ(FindCatalog(), 1);
  const UniqueCatalogInfo info(data_.pCatalog);
  EXPECT_EQ(info->cbStruct, 72u);
  EXPECT_EQ(info->dwCatalogVersion, 0u);
  EXPECT_STREQ(info->pcwszCatalogFilePath, L"C:\\catalogs\\first.cat");
  EXPECT_EQ(info->pcwszMemberFilePath, path_.c_str()) << "the caller's string, not a copy";
  EXPECT_EQ(info->hMemberFile, nullptr);
  EXPECT_EQ(info->pbCalculatedFileHash, nullptr);
  EXPECT_EQ(info->cbCalculatedFileHash, 0u);
  EXPECT_EQ(info->pcCatalogContext, nullptr);
  EXPECT_NE(info->hCatAdmin, nullptr);
  EXPECT_EQ(catalogs_.Count("enum"), 1);
}

TEST_F(GetSecurityCatalogInfo, UsesTheHashIn64UpperCaseDigitsAsMemberTag) {
  ASSERT_EQ(FindCatalog(), 1);
  const UniqueCatalogInfo info(data_.pCatalog);
  EXPECT_STREQ(info->pcwszMemberTag, kFakeTag);
  EXPECT_EQ(std::wstring(info->pcwszMemberTag).size(), 64u);
  EXPECT_EQ(catalogs_.queriedHash, catalogs_.hash);
}

TEST_F(GetSecurityCatalogInfo, ReleasesTheCatalogAtOnceAndTheContextWithTheResult) {
  ASSERT_EQ(FindCatalog(), 1);
  UniqueCatalogInfo info(data_.pCatalog);
  EXPECT_EQ(catalogs_.calls, (std::vector<std::string>{"acquire", "hash size", "hash", "enum",
                                                       "info", "release catalog"}));
  EXPECT_EQ(catalogs_.openContexts, 1);
  info.reset();
  EXPECT_EQ(catalogs_.calls.back(), "release context");
  EXPECT_EQ(catalogs_.openContexts, 0);
}

TEST_F(GetSecurityCatalogInfo, CutsACatalogPathWithoutTerminatorAt259Characters) {
  catalogs_.fillWholePath = true;
  ASSERT_EQ(FindCatalog(), 1);
  const UniqueCatalogInfo info(data_.pCatalog);
  EXPECT_EQ(std::wstring(info->pcwszCatalogFilePath), std::wstring(259, L'x'));
}

TEST_F(GetSecurityCatalogInfo, LogsTheErrorOfAFailedContext) {
  catalogs_.failAcquire = true;
  catalogs_.acquireError = 5;
  ExpectRefusal({Error(
      L"Security - GetSecurityCatalogInfo - Failed during CryptCATAdminAcquireContext2. Error "
      L"Code = 5")});
  EXPECT_EQ(catalogs_.calls, (std::vector<std::string>{"acquire"}));
}

TEST_F(GetSecurityCatalogInfo, DoesNotReleaseAContextThatAFailedCallLeft) {
  catalogs_.failAcquire = true;
  catalogs_.leaveHandleOnFailure = true;
  EXPECT_EQ(FindCatalog(), 0);
  EXPECT_EQ(catalogs_.calls, (std::vector<std::string>{"acquire"}));
}

TEST_F(GetSecurityCatalogInfo, TreatsANullContextAsAFailure) {
  catalogs_.acquireNull = true;
  SetLastError(6);
  EXPECT_EQ(FindCatalog(), 0);
  EXPECT_EQ(catalogs_.calls, (std::vector<std::string>{"acquire"}));
}

TEST_F(GetSecurityCatalogInfo, RefusesANullPath) {
  EXPECT_EQ(Helper::GetSecurityCatalogInfo(nullptr, data_), 0);
  EXPECT_EQ(catalogs_.Count("enum"), 0);
  EXPECT_EQ(catalogs_.openContexts, 0);
}

TEST_F(GetSecurityCatalogInfo, RefusesAMissingFileWithoutAnErrorLineOrALookUp) {
  path_ = folder_.File(L"missing.exe");
  ExpectRefusal({});
  EXPECT_EQ(catalogs_.calls, (std::vector<std::string>{"acquire", "release context"}));
}

TEST_F(GetSecurityCatalogInfo, NeverLooksUpAnEmptyHash) {
  catalogs_.failHash = true;
  ExpectRefusal({});
  EXPECT_EQ(catalogs_.Count("enum"), 0);
}

TEST_F(GetSecurityCatalogInfo, LogsOneErrorForAFileThatNoCatalogLists) {
  catalogs_.catalogs.clear();
  catalogs_.enumError = 1168;
  ExpectRefusal({Error(
      L"Security - GetSecurityCatalogInfo - Failed during CryptCATAdminEnumCatalogFromHash. Error "
      L"Code = 1168")});
  EXPECT_EQ(catalogs_.Count("release catalog"), 0);
  EXPECT_EQ(catalogs_.Count("release context"), 1);
}

TEST_F(GetSecurityCatalogInfo, RefusesACatalogWithoutAPathAndLogsNoError) {
  catalogs_.failInfo = true;
  ExpectRefusal({});
  EXPECT_EQ(catalogs_.calls,
            (std::vector<std::string>{"acquire", "hash size", "hash", "enum", "info",
                                      "release catalog", "release context"}));
}
