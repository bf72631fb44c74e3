#include "support/import_watch.h"

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include "import_patch.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::ImportWatch;

BOOL WINAPI NoFolder(const wchar_t*, SECURITY_ATTRIBUTES*) {
  SetLastError(ERROR_DISK_FULL);
  return FALSE;
}

TEST(ImportWatch, RecordsCallsInOrder) {
  const ImportWatch watch;
  const DWORD process = GetCurrentProcessId();
  const DWORD attributes = GetFileAttributesW(L"C:\\nowhere");
  EXPECT_EQ(GetCurrentProcessId(), process);
  EXPECT_EQ(attributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_THAT(watch.Calls(),
              ElementsAre("GetCurrentProcessId", "GetFileAttributesW", "GetCurrentProcessId"));
}

TEST(ImportWatch, PassesArgumentsAndResultThrough) {
  wchar_t buffer[8] = L"-------";
  SYSTEMTIME time{};
  FILETIME fileTime{0xD53E8000, 0x019DB1DE};
  const ImportWatch watch;
  // Nine arguments: four in registers, five on the stack.
  const int length =
      CompareStringEx(L"", NORM_IGNORECASE, L"ABC", 3, L"abc", 3, nullptr, nullptr, 0);
  const DWORD chars = GetEnvironmentVariableW(L"no such variable", buffer, 8);
  const BOOL converted = FileTimeToSystemTime(&fileTime, &time);
  EXPECT_EQ(length, CSTR_EQUAL);
  EXPECT_EQ(chars, 0U);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ENVVAR_NOT_FOUND));
  EXPECT_TRUE(converted);
  EXPECT_EQ(time.wYear, 1970);
  EXPECT_THAT(watch.Calls(),
              ElementsAre("CompareStringEx", "GetEnvironmentVariableW", "FileTimeToSystemTime"));
}

TEST(ImportWatch, RecordsFileCallsOfTheCLibrary) {
  const ImportWatch watch;
  EXPECT_EQ(_wfopen(L"C:\\nowhere\\file", L"rb"), nullptr);
  EXPECT_THAT(watch.Calls(), ElementsAre("_wfopen"));
}

TEST(ImportWatch, RecordsSystemCallsOfTheCppLibrary) {
  const ImportWatch watch;
  EXPECT_FALSE(std::filesystem::exists(L"C:\\nowhere"));
  EXPECT_FALSE(watch.Calls().empty());
}

TEST(ImportWatch, IgnoresMemoryAndStringFunctions) {
  const ImportWatch watch;
  std::string text(1000, 'a');
  text += std::to_string(text.size());
  EXPECT_EQ(text.find('1'), 1000U);
  EXPECT_THAT(watch.Calls(), IsEmpty());
}

TEST(ImportWatch, RecordsCallsToAFakeThatIsInPlace) {
  const Standin::ImportPatch patch("CreateDirectoryW", &NoFolder);
  const ImportWatch watch;
  EXPECT_FALSE(CreateDirectoryW(L"C:\\wattleaf-folder", nullptr));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DISK_FULL));
  EXPECT_THAT(watch.Calls(), Contains("CreateDirectoryW"));
}

TEST(ImportWatch, RestoresTheImportsWhenDestroyed) {
  void** const slot = Standin::FindImportSlot(GetModuleHandleW(nullptr), "GetCurrentProcessId");
  ASSERT_NE(slot, nullptr);
  void* const before = *slot;
  {
    const ImportWatch watch;
    EXPECT_NE(*slot, before);
  }
  EXPECT_EQ(*slot, before);
}

TEST(ImportWatch, FailsTheTestBeyondItsCapacity) {
  const ImportWatch watch;
  for (int i = 0; i < 4096; ++i) GetCurrentProcessId();
  EXPECT_EQ(watch.Calls().size(), 4096U);
  GetCurrentProcessId();
  std::size_t kept = 0;
  EXPECT_NONFATAL_FAILURE(kept = watch.Calls().size(), "more calls than the watch can record");
  EXPECT_EQ(kept, 4096U);
}

}  // namespace
