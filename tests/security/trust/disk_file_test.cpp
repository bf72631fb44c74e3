#include "security/trust/disk_file.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "import_patch.h"
#include "security/trust/fake_catalogs.h"
#include "security/trust/fake_trust.h"
#include "security/trust/file_open_watch.h"
#include "security/trust/zq_authenticode_helper.h"
#include "support/temp_folder.h"

// A path that leads to something other than a file on a disk has no signatures, and it is not
// verified.

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

DWORD fakeFileType = FILE_TYPE_DISK;

DWORD WINAPI FakeFileType(HANDLE) { return fakeFileType; }

}  // namespace

TEST(GetSignatures, ReturnsNothingForAPipeOrADeviceWithoutOpeningOrVerifyingIt) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  trust.byCatalog = {Signature(0, 1)};
  FakeCatalogs catalogs;
  catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
  const FileOpenWatch watch;
  for (const wchar_t* path :
       {L"\\\\.\\pipe\\trust-test", L"//./PIPE/trust-test", L"\\\\?\\pipe\\trust-test",
        L"\\\\server\\pipe\\trust-test", L"\\\\?\\UNC\\server\\pipe\\trust-test",
        L"\\\\.\\mailslot\\trust-test", L"\\\\.\\x\\..\\pipe\\trust-test",
        L"\\\\?\\pipe\\..\\C:\\trust-test", L"\\\\.\\COM1", L"\\\\.\\NUL", L"NUL", L"nul", L"CON",
        L"COM1", L"COM1:", L"\\\\.\\C:", L"\\\\.\\PhysicalDrive0"}) {
    EXPECT_TRUE(Helper::GetAllSignatures(path).empty()) << testing::PrintToString(path);
  }
  EXPECT_TRUE(trust.calls.empty());
  EXPECT_EQ(catalogs.Count("hash size"), 0);
  EXPECT_TRUE(watch.opens.empty());
}

TEST(GetSignatures, VerifiesATooLongPathUnlessItNamesAPipe) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  const std::wstring tail(40000, L'a');
  EXPECT_TRUE(Helper::GetSignatures((L"\\\\.\\pipe\\" + tail).c_str(), false).empty());
  EXPECT_TRUE(trust.calls.empty());
  EXPECT_EQ(Helper::GetSignatures((L"C:\\" + tail).c_str(), false).size(), 1u);
}

TEST(GetSignatures, ReturnsNothingForAReservedNameThatTheSystemMakesADevice) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  for (const wchar_t* path : {L"COM1.dll", L"C:\\folder\\NUL.txt", L"aux.dll"}) {
    wchar_t full[MAX_PATH] = {};
    GetFullPathNameW(path, MAX_PATH, full, nullptr);
    const bool isDevice = std::wstring(full).rfind(L"\\\\.\\", 0) == 0;
    trust.calls.clear();
    EXPECT_EQ(Helper::GetSignatures(path, false).empty(), isDevice);
    EXPECT_EQ(trust.calls.empty(), isDevice);
  }
}

TEST(GetSignatures, ReturnsNothingForAHandleThatIsNoDiskFileWithoutVerifyingIt) {
  // As for a link or a drive letter that leads to a pipe: only the handle reveals the type.
  const TempFolder folder;
  const std::wstring path = folder.File(L"looks.dll");
  WriteWholeFile(path, "content");
  for (const DWORD type : {FILE_TYPE_PIPE, FILE_TYPE_CHAR, FILE_TYPE_REMOTE, FILE_TYPE_UNKNOWN}) {
    FakeTrust trust;
    trust.embedded = {Signature(0, 1)};
    trust.byCatalog = {Signature(0, 1)};
    FakeCatalogs catalogs;
    catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
    fakeFileType = type;
    const Standin::ImportPatch patch("GetFileType", &FakeFileType);
    EXPECT_TRUE(Helper::GetAllSignatures(path.c_str()).empty()) << type;
    EXPECT_TRUE(trust.calls.empty()) << type;
    fakeFileType = FILE_TYPE_DISK;
    EXPECT_EQ(Helper::GetAllSignatures(path.c_str()).size(), 2u);
  }
}

TEST(GetSignatures, ReturnsNothingForABusyPipeThatOnlyOpeningReveals) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  FileOpenWatch watch;
  watch.error = ERROR_PIPE_BUSY;
  EXPECT_TRUE(Helper::GetSignatures(L"C:\\folder\\link.dll", false).empty());
  EXPECT_TRUE(trust.calls.empty());
  watch.error = ERROR_ACCESS_DENIED;
  EXPECT_EQ(Helper::GetSignatures(L"C:\\folder\\link.dll", false).size(), 1u)
      << "the system verifies a file that cannot be opened";
}

TEST(GetSignatures, OpensTheFileForAttributesOnlyAtIdentificationLevel) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"plain.dll");
  WriteWholeFile(path, "content");
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  const FileOpenWatch watch;
  EXPECT_EQ(Helper::GetSignatures(path.c_str(), false).size(), 1u);
  EXPECT_EQ(watch.Paths(), (std::vector<std::wstring>{path}));
  ASSERT_EQ(watch.opens.size(), 1u);
  const FileOpenWatch::Open& open = watch.opens.front();
  EXPECT_EQ(open.access, 0x80u);     // FILE_READ_ATTRIBUTES
  EXPECT_EQ(open.share, 7u);         // read, write and delete
  EXPECT_EQ(open.disposition, 3u);   // OPEN_EXISTING
  EXPECT_EQ(open.flags, 0x110000u);  // SECURITY_SQOS_PRESENT, SECURITY_IDENTIFICATION
  EXPECT_EQ(watch.closed, 1);
}

TEST(GetSignatures, TreatsANetworkPathLikeAnyOther) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  FileOpenWatch watch;
  watch.error = ERROR_BAD_NETPATH;  // so that the test reaches no server
  const std::wstring path = L"\\\\server\\share\\file.dll";
  EXPECT_EQ(Helper::GetSignatures(path.c_str(), false).size(), 1u);
  EXPECT_EQ(watch.Paths(), (std::vector<std::wstring>{path}));
  EXPECT_EQ(trust.calls.front().path, path);
}
