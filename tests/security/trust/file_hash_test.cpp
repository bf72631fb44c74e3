#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <mscat.h>

#include <gtest/gtest.h>

#include "import_patch.h"
#include "platform/win32/owners.h"
#include "security/trust/fake_catalogs.h"
#include "security/trust/file_open_watch.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

class CalculateFileHash : public testing::Test {
 protected:
  CalculateFileHash() {
    WriteWholeFile(path_, "content");
    watch_.Clear();
  }

  FileHash HashWithOwnContext() { return Helper::CalculateFileHash(path_.c_str(), nullptr); }

  TempFolder folder_;
  std::wstring path_ = folder_.File(L"hashed.bin");
  FakeCatalogs catalogs_;
  LogCapture log_;
  FileOpenWatch watch_;
};

}  // namespace

TEST_F(CalculateFileHash, ReturnsTheBytesAndUpperCaseHexadecimal) {
  catalogs_.hash = {0x00, 0x09, 0xAB, 0xff};
  const FileHash hash = HashWithOwnContext();
  EXPECT_EQ(hash.bytes, (std::vector<std::uint8_t>{0x00, 0x09, 0xAB, 0xff}));
  EXPECT_EQ(hash.hexText, L"0009ABFF");
  EXPECT_TRUE(log_.Records().empty());
}

TEST_F(CalculateFileHash, OpensForReadingWithFullSharingAndClosesTheFile) {
  static_cast<void>(HashWithOwnContext());
  ASSERT_EQ(watch_.opens.size(), 1u);
  const FileOpenWatch::Open& open = watch_.opens.front();
  EXPECT_EQ(open.path, path_);
  EXPECT_EQ(open.access, 0x80000000u);  // GENERIC_READ
  EXPECT_EQ(open.share, 7u);            // read, write and delete
  EXPECT_FALSE(open.hasSecurity);
  EXPECT_EQ(open.disposition, 3u);  // OPEN_EXISTING
  EXPECT_EQ(open.flags, 0u);
  EXPECT_FALSE(open.hasTemplate);
  EXPECT_EQ(watch_.closed, 1);
}

TEST_F(CalculateFileHash, ReleasesItsOwnContextAfterASuccess) {
  static_cast<void>(HashWithOwnContext());
  EXPECT_EQ(catalogs_.calls,
            (std::vector<std::string>{"acquire", "hash size", "hash", "release context"}));
}

TEST_F(CalculateFileHash, DoesNotReleaseItsOwnContextAfterAFailure) {
  catalogs_.failHash = true;
  static_cast<void>(HashWithOwnContext());
  EXPECT_EQ(catalogs_.Count("release context"), 0);
  EXPECT_EQ(catalogs_.openContexts, 1);
  EXPECT_EQ(watch_.closed, 1) << "the file must be closed after a failure too";
}

TEST_F(CalculateFileHash, NeitherAcquiresNorReleasesAContextWhenOneIsGiven) {
  HCATADMIN given = nullptr;
  ASSERT_TRUE(CryptCATAdminAcquireContext2(&given, nullptr, L"SHA256", nullptr, 0));
  catalogs_.calls.clear();
  EXPECT_EQ(Helper::CalculateFileHash(path_.c_str(), given).hexText.size(), 64u);
  EXPECT_EQ(catalogs_.calls, (std::vector<std::string>{"hash size", "hash"}));
}

TEST_F(CalculateFileHash, OpensNothingAndLogsNothingWhenNoContextIsAcquired) {
  catalogs_.failAcquire = true;
  const FileHash hash = HashWithOwnContext();
  EXPECT_TRUE(hash.bytes.empty());
  EXPECT_TRUE(hash.hexText.empty());
  EXPECT_TRUE(watch_.opens.empty());
  EXPECT_TRUE(log_.Records().empty());
}

TEST_F(CalculateFileHash, ReturnsAnEmptyTextAndLogsNothingForAMissingFile) {
  path_ = folder_.File(L"missing.bin");
  const FileHash hash = HashWithOwnContext();
  EXPECT_TRUE(hash.bytes.empty());
  EXPECT_TRUE(hash.hexText.empty());
  EXPECT_EQ(catalogs_.Count("hash size"), 0);
  EXPECT_TRUE(log_.Records().empty());
}

TEST_F(CalculateFileHash, AcceptsAnyLengthThatTheSystemReports) {
  catalogs_.hash.assign(100, 0xAB);
  const FileHash hash = HashWithOwnContext();
  EXPECT_EQ(hash.bytes, catalogs_.hash);
  EXPECT_EQ(hash.hexText.size(), 200u);
}

TEST_F(CalculateFileHash, DoesNotOpenAPathThatNamesADeviceOrAPipe) {
  const std::wstring name = L"\\\\.\\pipe\\trust-test-" + std::to_wstring(GetCurrentProcessId());
  const Zq::Gantry::Platform::UniqueFileHandle pipe(
      CreateNamedPipeW(name.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 0, 0, 0, nullptr));
  ASSERT_TRUE(static_cast<bool>(pipe));
  for (const std::wstring& path : {std::wstring(L"\\\\.\\NUL"), std::wstring(L"NUL"), name}) {
    path_ = path;
    watch_.Clear();
    EXPECT_TRUE(HashWithOwnContext().hexText.empty());
    EXPECT_TRUE(watch_.opens.empty());
  }
  EXPECT_EQ(catalogs_.Count("hash size"), 0);
}

TEST_F(CalculateFileHash, TreatsAHandleThatIsNoDiskFileAsNotOpened) {
  static DWORD type = FILE_TYPE_UNKNOWN;
  const Standin::ImportPatch patch(
      "GetFileType", +[](HANDLE) -> DWORD { return type; });
  for (const DWORD other : {FILE_TYPE_PIPE, FILE_TYPE_CHAR, FILE_TYPE_REMOTE, FILE_TYPE_UNKNOWN}) {
    type = other;
    watch_.Clear();
    EXPECT_TRUE(HashWithOwnContext().hexText.empty()) << other;
    EXPECT_NE(watch_.lastHandle, INVALID_HANDLE_VALUE);
    EXPECT_EQ(watch_.closed, 1) << other;
  }
  EXPECT_EQ(catalogs_.Count("hash size"), 0);
}

TEST_F(CalculateFileHash, FailsForASizeOfZeroEvenWhenTheCallSucceeds) {
  catalogs_.hashSizeZero = true;
  EXPECT_TRUE(HashWithOwnContext().hexText.empty());
  EXPECT_EQ(catalogs_.Count("hash size"), 1);
  EXPECT_EQ(catalogs_.Count("hash"), 0);
  EXPECT_EQ(watch_.closed, 1);
}

TEST_F(CalculateFileHash, UsesTheSizeEvenWhenTheSizeCallReturnsFalse) {
  catalogs_.failHashSizeCall = true;
  EXPECT_EQ(HashWithOwnContext().hexText.size(), 64u);
}

TEST_F(CalculateFileHash, ReturnsZeroBytesAndAnEmptyTextWhenHashingFails) {
  catalogs_.failHash = true;
  const FileHash hash = HashWithOwnContext();
  EXPECT_EQ(hash.bytes, std::vector<std::uint8_t>(32, 0));
  EXPECT_TRUE(hash.hexText.empty());
  EXPECT_TRUE(log_.Records().empty());
}
