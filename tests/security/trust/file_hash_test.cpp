#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <mscat.h>

#include <gtest/gtest.h>

#include <type_traits>

#include "import_patch.h"
#include "security/trust/fake_catalogs.h"
#include "security/trust/zq_authenticode_helper.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

// What CreateFileW was asked for, and how many of its handles are open.
struct OpenCall {
  std::wstring path;
  DWORD access = 0;
  DWORD share = 0;
  bool hasSecurity = false;
  DWORD disposition = 0;
  DWORD attributes = 0;
  bool hasTemplate = false;
};

OpenCall opened;
HANDLE openedHandle = nullptr;
int closedCount = 0;
decltype(&CreateFileW) realCreateFile = nullptr;
decltype(&CloseHandle) realCloseHandle = nullptr;

HANDLE WINAPI SeenCreateFile(LPCWSTR path, DWORD access, DWORD share,
                             LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD attributes,
                             HANDLE templateFile) {
  opened = {
      path, access, share, security != nullptr, disposition, attributes, templateFile != nullptr};
  openedHandle =
      realCreateFile(path, access, share, security, disposition, attributes, templateFile);
  return openedHandle;
}

BOOL WINAPI SeenCloseHandle(HANDLE handle) {
  if (handle == openedHandle) ++closedCount;
  return realCloseHandle(handle);
}

class CalculateFileHash : public testing::Test {
 protected:
  CalculateFileHash() {
    WriteWholeFile(path_, "content");
    realCreateFile = create_.Original<std::remove_pointer_t<decltype(&CreateFileW)>>();
    realCloseHandle = close_.Original<std::remove_pointer_t<decltype(&CloseHandle)>>();
    closedCount = 0;
    openedHandle = nullptr;
  }

  FileHash HashWithOwnContext() { return Helper::CalculateFileHash(path_.c_str(), nullptr); }

  TempFolder folder_;
  std::wstring path_ = folder_.File(L"hashed.bin");
  FakeCatalogs catalogs_;
  LogCapture log_;
  Standin::ImportPatch create_{"CreateFileW", &SeenCreateFile};
  Standin::ImportPatch close_{"CloseHandle", &SeenCloseHandle};
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
  (void)HashWithOwnContext();
  EXPECT_EQ(opened.path, path_);
  EXPECT_EQ(opened.access, 0x80000000u);
  EXPECT_EQ(opened.share, 7u);
  EXPECT_FALSE(opened.hasSecurity);
  EXPECT_EQ(opened.disposition, 3u);
  EXPECT_EQ(opened.attributes, 0u);
  EXPECT_FALSE(opened.hasTemplate);
  EXPECT_EQ(closedCount, 1);
}

TEST_F(CalculateFileHash, ReleasesItsOwnContextAfterASuccess) {
  (void)HashWithOwnContext();
  EXPECT_EQ(catalogs_.calls,
            (std::vector<std::string>{"acquire", "hash size", "hash", "release context"}));
}

TEST_F(CalculateFileHash, DoesNotReleaseItsOwnContextAfterAFailure) {
  catalogs_.failHash = true;
  (void)HashWithOwnContext();
  EXPECT_EQ(catalogs_.Count("release context"), 0);
  EXPECT_EQ(catalogs_.openContexts, 1);
  EXPECT_EQ(closedCount, 1) << "the file is closed all the same";
}

TEST_F(CalculateFileHash, NeitherAcquiresNorReleasesAContextWhenOneIsGiven) {
  // A fake context is the address that the first acquisition gives.
  HCATADMIN given = nullptr;
  ASSERT_TRUE(CryptCATAdminAcquireContext2(&given, nullptr, L"SHA256", nullptr, 0));
  catalogs_.calls.clear();
  EXPECT_EQ(Helper::CalculateFileHash(path_.c_str(), given).hexText.size(), 64u);
  EXPECT_EQ(catalogs_.calls, (std::vector<std::string>{"hash size", "hash"}));
}

TEST_F(CalculateFileHash, OpensNothingAndLogsNothingWhenNoContextIsAcquired) {
  catalogs_.failAcquire = true;
  opened = {};
  const FileHash hash = HashWithOwnContext();
  EXPECT_TRUE(hash.bytes.empty());
  EXPECT_TRUE(hash.hexText.empty());
  EXPECT_EQ(opened.path, L"");
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
  const HANDLE pipe =
      CreateNamedPipeW(name.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 0, 0, 0, nullptr);
  ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
  for (const std::wstring& path : {std::wstring(L"\\\\.\\NUL"), std::wstring(L"NUL"), name}) {
    path_ = path;
    opened = {};
    EXPECT_TRUE(HashWithOwnContext().hexText.empty());
    EXPECT_EQ(opened.path, L"");
  }
  EXPECT_EQ(catalogs_.Count("hash size"), 0);
  CloseHandle(pipe);
}

TEST_F(CalculateFileHash, TreatsAHandleThatIsNoDiskFileAsNotOpened) {
  static DWORD type = FILE_TYPE_UNKNOWN;
  const Standin::ImportPatch patch(
      "GetFileType", +[](HANDLE) -> DWORD { return type; });
  for (const DWORD other : {FILE_TYPE_PIPE, FILE_TYPE_CHAR, FILE_TYPE_REMOTE, FILE_TYPE_UNKNOWN}) {
    type = other;
    closedCount = 0;
    EXPECT_TRUE(HashWithOwnContext().hexText.empty()) << other;
    EXPECT_NE(openedHandle, INVALID_HANDLE_VALUE);
    EXPECT_EQ(closedCount, 1) << other;
  }
  EXPECT_EQ(catalogs_.Count("hash size"), 0);
}

TEST_F(CalculateFileHash, FailsForASizeOfZeroEvenWhenTheCallSucceeds) {
  catalogs_.hashSizeZero = true;
  EXPECT_TRUE(HashWithOwnContext().hexText.empty());
  EXPECT_EQ(catalogs_.Count("hash size"), 1);
  EXPECT_EQ(catalogs_.Count("hash"), 0);
  EXPECT_EQ(closedCount, 1);
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
