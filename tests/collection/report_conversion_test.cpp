#include <windows.h>

#include <share.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "base/fake_attributes.h"
#include "catalogue/sample_program.h"
#include "collection/ledger_fixture.h"
#include "collection/open_helper.h"
#include "platform/win32/owners.h"

// The conversion as the worker calls it, on a data folder of the test's own.

using namespace TestSupport;
using Zq::Gantry::Platform::UniqueFileHandle;
using Zq::Gantry::Server::Services::Wattleaf::GenericDocument;
using Zq::Gantry::Server::Services::Wattleaf::PackagedApps;

namespace {

constexpr char kStarted[] = "XML parsing started at :10:30:15 14-11-2026\n";
constexpr char kCompleted[] = "XML parsing completed :10:30:15 14-11-2026\n";

constexpr char kReport[] =
    "<Report><Row AppId='new' TimeStamp='2026-11-14:02:10:46'>"
    "<TotalEnergyConsumption Value='17'/></Row></Report>";
constexpr char kNewRow[] =
    R"({"Name":"new","DisplayName":"","TimeStamp":"2026-11-14:02:10:46","TotalEnergy":17})";
constexpr char kOldRow[] =
    R"({"Name":"old","DisplayName":"Old","TimeStamp":"2026-11-01:02:00:00","TotalEnergy":5})";
constexpr char kForgottenRow[] =
    R"({"Name":"old","DisplayName":"Old","TimeStamp":"2026-10-15:10:30:14","TotalEnergy":5})";

std::string Array(const std::string& rows) { return "[" + rows + "]"; }

class ReportConversion : public testing::Test {
 protected:
  ReportConversion() {
    FakeClock::Set("2026-11-14 10:30:15");
    helper.collectionPath = folder.Path().c_str();
  }

  void WriteReport(const std::string& text) const { WriteWholeFile(reportPath, text); }
  void WriteStore(const std::string& text) const { WriteWholeFile(storePath, text); }
  std::string StoreText() const { return ReadWholeFile(storePath); }

  /// Runs the conversion; what it wrote to the standard output.
  std::string Convert() {
    testing::internal::CaptureStdout();
    helper.ConvertPowerLogXmltoJson();
    return testing::internal::GetCapturedStdout();
  }

  const TempFolder folder;
  const FakeClock clock;
  const LogCapture log;
  OpenHelper helper;
  const std::wstring reportPath = folder.Path() + L"\\Powerlog.xml";
  const std::wstring storePath = folder.Path() + L"\\Powerlog.json";
};

}  // namespace

TEST_F(ReportConversion, FoldsTheReportIntoTheStoreAndDeletesIt) {
  WriteReport(kReport);
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow));
  Convert();
  EXPECT_EQ(StoreText(), Array(std::string(kNewRow) + "," + kOldRow));
  EXPECT_FALSE(FileExists(reportPath));
}

TEST_F(ReportConversion, WritesTwoLinesToTheStandardOutputAndNoneToTheLog) {
  WriteReport(kReport);
  EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  EXPECT_TRUE(log.Records().empty());
}

namespace {

/// A clock that goes on by a second each time it is asked.
__time64_t SteppingTime(__time64_t*) {
  static __time64_t now = 1'794'652'215;
  return ++now;
}

}  // namespace

TEST_F(ReportConversion, EachLineHasItsOwnTime) {
  const Standin::ImportPatch steps("_time64", &SteppingTime);
  WriteReport(kReport);
  const std::string output = Convert();
  const std::size_t end = output.find('\n');
  ASSERT_NE(end, std::string::npos);
  const auto timeIn = [](const std::string& line) { return line.substr(line.find(" :")); };
  EXPECT_NE(timeIn(output.substr(0, end + 1)), timeIn(output.substr(end + 1)));
}

TEST_F(ReportConversion, WithoutAReportPrunesAndRewritesTheStore) {
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow) + "\n");
  EXPECT_EQ(Convert(), kCompleted);
  EXPECT_EQ(StoreText(), Array(kOldRow));
}

TEST_F(ReportConversion, WithoutAReportAndAStoreWritesAnEmptyArray) {
  EXPECT_EQ(Convert(), kCompleted);
  EXPECT_EQ(StoreText(), "[]");
}

TEST_F(ReportConversion, OfAnEmptyReportAndAnEmptyStoreWritesAnEmptyArray) {
  WriteReport("<Report/>");
  WriteStore("[]");
  EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  EXPECT_EQ(StoreText(), "[]");
}

TEST_F(ReportConversion, LeavesAFolderInTheReportsPlaceAlone) {
  CreateDirectoryW(reportPath.c_str(), nullptr);
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow));
  EXPECT_EQ(Convert(), kCompleted);
  EXPECT_TRUE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), Array(kOldRow));
}

TEST_F(ReportConversion, NeitherReadsNorDeletesAReportThatIsALink) {
  WriteReport(kReport);
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow));
  {
    const FakeReparsePoint link(reportPath, IO_REPARSE_TAG_SYMLINK);
    EXPECT_EQ(Convert(), kCompleted);
  }
  EXPECT_TRUE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), Array(kOldRow));
}

TEST_F(ReportConversion, NeitherReadsNorDeletesAReportWhoseStatusCannotBeHad) {
  WriteReport(kReport);
  {
    const FakeStatusFailure failure(reportPath);
    EXPECT_EQ(Convert(), kCompleted);
  }
  EXPECT_TRUE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), "[]");
}

namespace {

/// As Windows documents the call: nobody else may write the file meanwhile.
errno_t __cdecl UnsharedOpen(std::FILE** file, const wchar_t* path, const wchar_t* mode) {
  *file = _wfsopen(path, mode, _SH_DENYWR);
  return *file != nullptr ? 0 : EACCES;
}

}  // namespace

// Another program that lets everybody do everything, as a scanner of files does.
TEST_F(ReportConversion, ReadsAReportThatAnotherProgramHoldsOpenForWriting) {
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

TEST_F(ReportConversion, DeletesAReportThatDoesNotParse) {
  WriteReport(std::string(kReport) + "<");
  WriteStore(Array(std::string(kForgottenRow) + "," + kOldRow));
  EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_EQ(StoreText(), Array(kOldRow));
}

TEST_F(ReportConversion, WritesAStoreThatWasMissing) {
  WriteReport(kReport);
  Convert();
  EXPECT_EQ(StoreText(), Array(kNewRow));
}

TEST_F(ReportConversion, NeitherReadsNorWritesThroughAStoreThatIsALink) {
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

TEST_F(ReportConversion, LeavesAFolderInTheStoresPlaceAndTellsNobody) {
  WriteReport(kReport);
  CreateDirectoryW(storePath.c_str(), nullptr);
  EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  EXPECT_NE(GetFileAttributesW(storePath.c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0U);
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ReportConversion, OverwritesAStoreThatDoesNotParseOrIsNoArray) {
  for (const std::string& store :
       {std::string(), Array(kOldRow).substr(1), "[" + std::string(kOldRow), std::string(kOldRow),
        std::string("null"), "\xEF\xBB\xBF" + Array(kOldRow)}) {
    WriteReport(kReport);
    WriteStore(store);
    Convert();
    EXPECT_EQ(StoreText(), Array(kNewRow)) << store;
  }
}

// A hole takes no room on the disk, and the parser takes its zeros for the end.
TEST_F(ReportConversion, OverwritesAStoreOfMoreThanAHundredAndTwentyEightMebibytes) {
  for (const auto& [bytes, rows] :
       {std::pair(128U * 1024 * 1024, kOldRow), std::pair(128U * 1024 * 1024 + 1, "")}) {
    WriteStore(Array(kOldRow));
    std::filesystem::resize_file(storePath, bytes);
    Convert();
    EXPECT_EQ(StoreText(), Array(rows));
  }
}

TEST_F(ReportConversion, OverwritesAStoreWithMoreThanAMillionOpenValues) {
  // The array is one of them, and so are the nine of the row that stands last.
  for (const auto& [zeros, rows] : {std::pair(999'990, kOldRow), std::pair(999'991, "")}) {
    std::string store = "[";
    for (int i = 0; i < zeros; ++i) store += "0,";
    WriteStore(store + kOldRow + "]");
    Convert();
    EXPECT_EQ(StoreText(), Array(rows));
  }
}

TEST_F(ReportConversion, OverwritesAStoreWhoseStatusCannotBeHad) {
  WriteReport(kReport);
  WriteStore(Array(kOldRow));
  {
    const FakeStatusFailure failure(storePath);
    Convert();
  }
  EXPECT_EQ(StoreText(), Array(kNewRow));
}

TEST_F(ReportConversion, LeavesAStoreThatCannotBeOpenedForWritingAndTellsNobody) {
  WriteReport(kReport);
  WriteStore(Array(kForgottenRow));
  {
    // Another program that reads it and lets nobody write meanwhile.
    const UniqueFileHandle reader(CreateFileW(storePath.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                              nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);
    EXPECT_EQ(Convert(), std::string(kStarted) + kCompleted);
  }
  EXPECT_EQ(StoreText(), Array(kForgottenRow));
  EXPECT_FALSE(FileExists(reportPath));
  EXPECT_TRUE(log.Records().empty());
}

TEST_F(ReportConversion, OfAMissingFolderMakesNothing) {
  const std::wstring missing = folder.File(L"missing");
  helper.collectionPath = missing.c_str();
  EXPECT_EQ(Convert(), kCompleted);
  EXPECT_FALSE(FileExists(missing));
}

TEST_F(ReportConversion, ForgetsARowInTheFirstRunAfterItsThirtyDays) {
  WriteReport(kReport);
  Convert();
  FakeClock::Set("2026-12-14 02:10:46");
  Convert();
  EXPECT_EQ(StoreText(), Array(kNewRow));
  FakeClock::Set("2026-12-14 02:10:47");
  Convert();
  EXPECT_EQ(StoreText(), "[]");
}

namespace {

std::string ReportOf(const std::string& rows) { return "<Report>" + rows + "</Report>"; }

/// A row of a report, and how the store spells it.
std::string ReportRow(const std::string& name, const std::string& time, int energy) {
  return "<Row AppId='" + name + "' TimeStamp='" + time + "'><TotalEnergyConsumption Value='" +
         std::to_string(energy) + "'/></Row>";
}

std::string StoredRow(const std::string& name, const std::string& time, int energy) {
  return R"({"Name":")" + name + R"(","DisplayName":"","TimeStamp":")" + time +
         R"(","TotalEnergy":)" + std::to_string(energy) + "}";
}

constexpr char kMonday[] = "2026-11-09:08:00:00";
constexpr char kTuesday[] = "2026-11-10:08:00:00";
constexpr char kWednesday[] = "2026-11-11:08:00:00";

}  // namespace

// Reports of consecutive days overlap; between them the service may have been started anew.
TEST_F(ReportConversion, OfSeveralDaysKeepsEachRowOnceWithItsLastEnergy) {
  WriteReport(ReportOf(ReportRow("a", kMonday, 1) + ReportRow("b", kTuesday, 2)));
  Convert();
  EXPECT_EQ(StoreText(), Array(StoredRow("a", kMonday, 1) + "," + StoredRow("b", kTuesday, 2)));

  FakeClock::Set("2026-11-15 10:30:15");
  OpenHelper restarted;
  restarted.collectionPath = folder.Path().c_str();
  WriteReport(ReportOf(ReportRow("b", kTuesday, 20) + ReportRow("c", kWednesday, 3) +
                       ReportRow("b", kTuesday, 5)));
  restarted.ConvertPowerLogXmltoJson();
  const std::string afterTwo =
      Array(StoredRow("b", kTuesday, 25) + "," + StoredRow("c", kWednesday, 3) + "," +
            StoredRow("a", kMonday, 1));
  EXPECT_EQ(StoreText(), afterTwo);

  restarted.ConvertPowerLogXmltoJson();
  EXPECT_EQ(StoreText(), afterTwo) << "without a report";
  WriteReport("<Report>" + ReportRow("d", kMonday, 9));
  restarted.ConvertPowerLogXmltoJson();
  EXPECT_EQ(StoreText(), afterTwo) << "with a report that does not parse";
}

TEST_F(ReportConversion, ReadsTheStoreAnewInEachPass) {
  WriteReport(ReportOf(ReportRow("a", kMonday, 1)));
  Convert();
  WriteStore(Array(StoredRow("x", kTuesday, 7)));
  WriteReport(ReportOf(ReportRow("b", kTuesday, 2)));
  Convert();
  EXPECT_EQ(StoreText(), Array(StoredRow("b", kTuesday, 2) + "," + StoredRow("x", kTuesday, 7)));
  DeleteFileW(storePath.c_str());
  Convert();
  EXPECT_EQ(StoreText(), "[]");
}

TEST_F(ReportConversion, ReadsTheCatalogueAnewInEachPassForNewRowsOnly) {
  WriteReport(ReportOf(ReportRow("new", kMonday, 1)));
  Convert();
  helper.uwpApps.Replace(PackagedApps{{"new", {"Shown", ""}}});
  WriteReport(ReportOf(ReportRow("new", kTuesday, 2)));
  Convert();
  EXPECT_EQ(StoreText(),
            Array(R"({"Name":"new","DisplayName":"Shown","TimeStamp":"2026-11-10:08:00:00",)"
                  R"("TotalEnergy":2},)" +
                  StoredRow("new", kMonday, 1)));
}

// Each pass forgets the rows that are too old at its own time, stored and reported ones alike.
TEST_F(ReportConversion, CutsAtThirtyDaysBeforeEachPass) {
  WriteReport(ReportOf(ReportRow("a", "2026-10-15:10:30:14", 1) +
                       ReportRow("b", "2026-10-15:10:30:15", 2) +
                       ReportRow("c", "2026-10-15:10:30:16", 3)));
  Convert();
  EXPECT_EQ(StoreText(), Array(StoredRow("b", "2026-10-15:10:30:15", 2) + "," +
                               StoredRow("c", "2026-10-15:10:30:16", 3)));
  FakeClock::Set("2026-11-14 10:30:16");
  Convert();
  EXPECT_EQ(StoreText(), Array(StoredRow("c", "2026-10-15:10:30:16", 3)));
  FakeClock::Set("2026-11-14 10:30:17");
  Convert();
  EXPECT_EQ(StoreText(), "[]");
}

TEST_F(ReportConversion, EnergyBeyond32BitsStaysForOneRun) {
  std::string rows;
  for (int i = 0; i < 3; ++i) {
    rows +=
        "<Row AppId='a' TimeStamp='2026-11-14:02:00:00'>"
        "<TotalEnergyConsumption Value='2147483647'/></Row>";
  }
  WriteReport("<Report>" + rows + "</Report>");
  Convert();
  EXPECT_NE(StoreText().find(R"("TotalEnergy":6442450941})"), std::string::npos);
  Convert();
  EXPECT_NE(StoreText().find(R"("TotalEnergy":2147483645})"), std::string::npos);
}

TEST_F(ReportConversion, NamesPackagesFromTheCatalogue) {
  helper.uwpApps.Replace(PackagedApps{{"new", {"Shown", ""}}});
  WriteReport(kReport);
  Convert();
  EXPECT_NE(StoreText().find(R"("DisplayName":"Shown")"), std::string::npos);
}

namespace {

std::string g_askedDrive;

DWORD WINAPI FakeDevice(const char* drive, char* target, DWORD capacity) {
  constexpr char kTarget[] = "\\Device\\Fake\0";  // a list of texts ends with an empty one
  g_askedDrive = drive;
  if (capacity < sizeof(kTarget)) return 0;
  std::copy(std::begin(kTarget), std::end(kTarget), target);
  return sizeof(kTarget);
}

}  // namespace

TEST_F(ReportConversion, MapsTheSystemDriveOnly) {
  const Standin::ImportPatch device("QueryDosDeviceA", &FakeDevice);
  WriteReport(
      "<Report><Row AppId='\\Device\\Fake\\Stra\xC3\x9F"
      "e\\none.exe'"
      " TimeStamp='2026-11-14:02:00:00'/>"
      "<Row AppId='\\Device\\Other\\none.exe' TimeStamp='2026-11-14:02:00:00'/></Report>");
  Convert();
  EXPECT_EQ(g_askedDrive, "C:");
  EXPECT_EQ(StoreText(), R"([{"Name":"\\Device\\Fake\\Stra)"
                         "\xC3\x9F"
                         R"(e\\none.exe","DisplayName":"",)"
                         R"("TimeStamp":"2026-11-14:02:00:00","TotalEnergy":0},)"
                         R"({"Name":"\\Device\\Other\\none.exe","DisplayName":"",)"
                         R"("TimeStamp":"2026-11-14:02:00:00","TotalEnergy":0}])");
}

namespace {

/// A real program of the data folder, and what a report of this machine calls it.
class ReportConversionOfAProgram : public ReportConversion {
 protected:
  /// The program says of itself that it is "Brook Browser".
  void CopyProgram(const std::wstring& name) const {
    const std::string sample = SampleProgram("one.exe");
    const std::wstring from(sample.begin(), sample.end());
    EXPECT_TRUE(CopyFileW(from.c_str(), folder.File(name).c_str(), /*bFailIfExists=*/TRUE));
  }

  /// The device path of the data folder, after `before`.
  std::string DeviceFolder(const std::string& before = "") {
    const std::string path(folder.Path().begin(), folder.Path().end());
    EXPECT_EQ(path.substr(0, 2), "C:");
    return before + helper.GetDevicePath("C:") + path.substr(2) + "\\";
  }

  /// The name in the store after a report with one row of this identity.
  std::string DisplayNameOf(const std::string& appId) {
    WriteReport("<Report><Row AppId='" + appId + "' TimeStamp='2026-11-14:02:10:46'/></Report>");
    Convert();
    GenericDocument store;
    store.Parse(StoreText().c_str());
    EXPECT_EQ(store[0]["Name"].GetString(), appId);
    return store[0]["DisplayName"].GetString();
  }
};

}  // namespace

TEST_F(ReportConversionOfAProgram, StoresWhatItsVersionResourceSays) {
  CopyProgram(L"program.exe");
  EXPECT_EQ(DisplayNameOf(DeviceFolder() + "program.exe"), "Brook Browser");
}

TEST_F(ReportConversionOfAProgram, StoresNoNameForAPathThatHoldsThePrefixFurtherOn) {
  CopyProgram(L"program.exe");
  EXPECT_EQ(DisplayNameOf(DeviceFolder("\\Device\\Mup") + "program.exe"), "");
}

// The path reaches the narrow calls as UTF-8, and they take it in the code page of the system.
TEST_F(ReportConversionOfAProgram, StoresNoNameForAPathOutsideAscii) {
  if (GetACP() == CP_UTF8) GTEST_SKIP() << "with this code page the file is found";
  CopyProgram(L"Stra\x00DF\x0065.exe");
  EXPECT_EQ(DisplayNameOf(DeviceFolder() + "Stra\xC3\x9F"
                                           "e.exe"),
            "");
}

namespace {

std::mutex* g_storeMutex = nullptr;
std::vector<std::string> g_openings;

/// Notes how a file is opened and whether the store was locked at the time.
errno_t __cdecl NotedOpen(std::FILE** file, const wchar_t* path, const wchar_t* mode) {
  const bool isFree = std::async(std::launch::async, [] {
                        const std::unique_lock attempt(*g_storeMutex, std::try_to_lock);
                        return attempt.owns_lock();
                      }).get();
  g_openings.push_back(std::string(mode, mode + std::wcslen(mode)) +
                       (isFree ? ", free" : ", locked"));
  *file = _wfopen(path, mode);
  return *file != nullptr ? 0 : EACCES;
}

}  // namespace

TEST_F(ReportConversion, LocksTheStoreWhileItReadsItAndWhileItWritesIt) {
  WriteStore("[]");
  g_storeMutex = &helper.storeMutex;
  g_openings.clear();
  const Standin::ImportPatch open("_wfopen_s", &NotedOpen);
  Convert();
  EXPECT_EQ(g_openings, (std::vector<std::string>{"rb, locked", "wb, locked"}));
}

// A reader keeps the store open; the report is read meanwhile, and nothing of it is lost.
TEST_F(ReportConversion, WaitsForAReaderOfTheStoreAndForNothingElse) {
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
