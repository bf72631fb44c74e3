// One conversion: the files of the report and the store, and the store's lock.

#include <windows.h>

#include <share.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "base/failing_status.h"
#include "base/fake_attributes.h"
#include "collection/report_conversion_fixture.h"
#include "import_patch.h"
#include "platform/win32/owners.h"

using namespace TestSupport;
using Zq::Gantry::Platform::UniqueFileHandle;

namespace {

constexpr char kStarted[] = "XML parsing started at :10:30:15 14-11-2026\n";
constexpr char kCompleted[] = "XML parsing completed :10:30:15 14-11-2026\n";

using ConvertPowerLogXmltoJson = ReportConversionFixture;

}  // namespace

TEST_F(ConvertPowerLogXmltoJson, MergesTheReportIntoTheStoreAndDeletesIt) {
  WriteReport(kReport);
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow));
  Convert();
  EXPECT_EQ(StoreText(), Array(std::string(kNewRow) + "," + kOldRow));
  EXPECT_FALSE(FileExists(reportPath));
}

TEST_F(ConvertPowerLogXmltoJson, PrintsTwoLinesAndLogsNothing) {
  WriteReport(kReport);
  EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  EXPECT_TRUE(log.Records().empty());
}

namespace {

/// A clock that advances by one second at each call.
__time64_t SteppingTime(__time64_t*) {
  static __time64_t now = 1'794'652'215;
  return ++now;
}

}  // namespace

TEST_F(ConvertPowerLogXmltoJson, ReadsTheClockForEachLine) {
  const Standin::ImportPatch steps("_time64", &SteppingTime);
  WriteReport(kReport);
  const std::string output = Convert();
  const std::size_t end = output.find('\n');
  ASSERT_NE(end, std::string::npos);
  const auto timeIn = [](const std::string& line) { return line.substr(line.find(" :")); };
  EXPECT_NE(timeIn(output.substr(0, end + 1)), timeIn(output.substr(end + 1)));
}

TEST_F(ConvertPowerLogXmltoJson, PrunesAndRewritesTheStoreWithoutAReport) {
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow) + "\n");
  EXPECT_EQ(Convert(), kCompleted);
  EXPECT_EQ(StoreText(), Array(kOldRow));
}

TEST_F(ConvertPowerLogXmltoJson, WritesAnEmptyArrayWithoutReportAndStore) {
  EXPECT_EQ(Convert(), kCompleted);
  EXPECT_EQ(StoreText(), "[]");
}

TEST_F(ConvertPowerLogXmltoJson, WritesAnEmptyArrayForAnEmptyReportAndStore) {
  WriteReport("<Report/>");
  WriteStore("[]");
  EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  EXPECT_EQ(StoreText(), "[]");
}

TEST_F(ConvertPowerLogXmltoJson, IgnoresAFolderNamedLikeTheReport) {
  CreateDirectoryW(reportPath.c_str(), nullptr);
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow));
  EXPECT_EQ(Convert(), kCompleted);
  EXPECT_TRUE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), Array(kOldRow));
}

TEST_F(ConvertPowerLogXmltoJson, NeitherReadsNorDeletesAReportThatIsALink) {
  WriteReport(kReport);
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow));
  {
    const FakeReparsePoint link(reportPath, IO_REPARSE_TAG_SYMLINK);
    EXPECT_EQ(Convert(), kCompleted);
  }
  EXPECT_TRUE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), Array(kOldRow));
}

TEST_F(ConvertPowerLogXmltoJson, NeitherReadsNorDeletesAReportWhoseStatusCannotBeRead) {
  WriteReport(kReport);
  {
    const FailingStatus failure(reportPath);
    EXPECT_EQ(Convert(), kCompleted);
  }
  EXPECT_TRUE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), "[]");
}

namespace {

/// Opens as Windows documents _wfopen_s: other programs may not write the file.
errno_t __cdecl UnsharedOpen(std::FILE** file, const wchar_t* path, const wchar_t* mode) {
  *file = _wfsopen(path, mode, _SH_DENYWR);
  return *file != nullptr ? 0 : EACCES;
}

}  // namespace

// The other program opens with full sharing, as a virus scanner does.
TEST_F(ConvertPowerLogXmltoJson, ReadsAReportThatAnotherProgramHoldsOpenForWriting) {
  const Standin::ImportPatch unshared("_wfopen_s", &UnsharedOpen);
  WriteReport(kReport);
  {
    const UniqueFileHandle holder(
        CreateFileW(reportPath.c_str(), GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    0, nullptr));
    ASSERT_TRUE(holder);
    Convert();
  }
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), Array(kNewRow));
}

TEST_F(ConvertPowerLogXmltoJson, DeletesAReportThatDoesNotParse) {
  WriteReport(std::string(kReport) + "<");
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow));
  EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), Array(kOldRow));
}

TEST_F(ConvertPowerLogXmltoJson, CreatesAMissingStore) {
  WriteReport(kReport);
  Convert();
  EXPECT_EQ(StoreText(), Array(kNewRow));
}

TEST_F(ConvertPowerLogXmltoJson, NeitherReadsNorWritesAStoreThatIsALink) {
  WriteReport(kReport);
  WriteStore(Array(kOldRow) + "\n");
  {
    const FakeReparsePoint link(storePath, IO_REPARSE_TAG_SYMLINK);
    Convert();
  }
  EXPECT_EQ(StoreText(), Array(kOldRow) + "\n");
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ConvertPowerLogXmltoJson, SilentlyKeepsAFolderNamedLikeTheStore) {
  WriteReport(kReport);
  CreateDirectoryW(storePath.c_str(), nullptr);
  EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  EXPECT_NE(GetFileAttributesW(storePath.c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0U);
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ConvertPowerLogXmltoJson, OverwritesAStoreThatIsNotAJsonArray) {
  for (const std::string& store :
       {std::string(), Array(kOldRow).substr(1), "[" + std::string(kOldRow), std::string(kOldRow),
        std::string("null"), "\xEF\xBB\xBF" + Array(kOldRow)}) {
    WriteReport(kReport);
    WriteStore(store);
    Convert();
    EXPECT_EQ(StoreText(), Array(kNewRow)) << store;
  }
}

// The file is sparse, and the parser takes the first zero as the end of the text.
TEST_F(ConvertPowerLogXmltoJson, OverwritesAStoreLargerThan128Mebibytes) {
  for (const auto& [bytes, rows] :
       {std::pair(128U * 1024 * 1024, kOldRow), std::pair(128U * 1024 * 1024 + 1, "")}) {
    WriteStore(Array(kOldRow));
    std::filesystem::resize_file(storePath, bytes);
    Convert();
    EXPECT_EQ(StoreText(), Array(rows));
  }
}

TEST_F(ConvertPowerLogXmltoJson, OverwritesAStoreWithMoreThanAMillionOpenValues) {
  // The array counts as one value, and the row at its end as nine.
  for (const auto& [zeros, rows] : {std::pair(999'990, kOldRow), std::pair(999'991, "")}) {
    std::string store = "[";
    for (int i = 0; i < zeros; ++i) store += "0,";
    WriteStore(store + kOldRow + "]");
    Convert();
    EXPECT_EQ(StoreText(), Array(rows));
  }
}

TEST_F(ConvertPowerLogXmltoJson, OverwritesAStoreWhoseStatusCannotBeRead) {
  WriteReport(kReport);
  WriteStore(Array(kOldRow));
  {
    const FailingStatus failure(storePath);
    Convert();
  }
  EXPECT_EQ(StoreText(), Array(kNewRow));
}

TEST_F(ConvertPowerLogXmltoJson, SilentlyKeepsAStoreThatCannotBeOpenedForWriting) {
  WriteReport(kReport);
  WriteStore(Array(kForgottenRow));
  {
    // Another program reads the store and does not share it for writing.
    const UniqueFileHandle reader(CreateFileW(storePath.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                              nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);
    EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  }
  EXPECT_EQ(StoreText(), Array(kForgottenRow));
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ConvertPowerLogXmltoJson, CreatesNothingInAMissingFolder) {
  const std::wstring missing = folder.File(L"missing");
  helper.collectionPath = missing.c_str();
  EXPECT_EQ(Convert(), kCompleted);
  EXPECT_FALSE(FileExists(missing));
}

namespace {

std::mutex* g_conversionMutex = nullptr;
std::vector<std::string> g_openings;

/// Records how a file is opened and whether the store is locked.
errno_t __cdecl RecordedStoreOpen(std::FILE** file, const wchar_t* path, const wchar_t* mode) {
  const bool isFree = std::async(std::launch::async, [] {
                        const std::unique_lock attempt(*g_conversionMutex, std::try_to_lock);
                        return attempt.owns_lock();
                      }).get();
  g_openings.push_back(std::string(mode, mode + std::wcslen(mode)) +
                       (isFree ? ", free" : ", locked"));
  *file = _wfopen(path, mode);
  return *file != nullptr ? 0 : EACCES;
}

}  // namespace

TEST_F(ConvertPowerLogXmltoJson, LocksTheStoreWhileReadingAndWhileWriting) {
  WriteStore("[]");
  g_conversionMutex = &helper.storeMutex;
  g_openings.clear();
  const Standin::ImportPatch open("_wfopen_s", &RecordedStoreOpen);
  Convert();
  EXPECT_EQ(g_openings, (std::vector<std::string>{"rb, locked", "wb, locked"}));
}

// While a reader holds the store, the report is read; it is merged once the reader is done.
TEST_F(ConvertPowerLogXmltoJson, WaitsForAReaderOfTheStoreOnly) {
  WriteReport(kReport);
  WriteStore(Array(kOldRow));
  const std::lock_guard ledgerIsBusy(helper.dataMutex);
  std::unique_lock reader(helper.storeMutex);
  auto conversion = std::async(std::launch::async, [this] { helper.ConvertPowerLogXmltoJson(); });
  for (int i = 0; i < 6000 && FileExists(reportPath); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_EQ(conversion.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_EQ(StoreText(), Array(kOldRow));

  reader.unlock();
  conversion.get();
  EXPECT_EQ(StoreText(), Array(std::string(kNewRow) + "," + kOldRow));
}
