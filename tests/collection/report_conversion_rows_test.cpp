// The rows of the store: over several conversions, and the names of programs and packages.

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "collection/report_conversion_fixture.h"
#include "import_patch.h"

using namespace TestSupport;
using Zq::Gantry::Server::Services::Wattleaf::PackagedApps;

namespace {

std::string ReportOf(const std::string& rows) { return "<Report>" + rows + "</Report>"; }

/// A row of a report. StoredRow is the same row as the store writes it.
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

using ConvertPowerLogXmltoJson = ReportConversionFixture;

}  // namespace

TEST_F(ConvertPowerLogXmltoJson, DropsARowInTheFirstRunAfterThirtyDays) {
  WriteReport(kReport);
  Convert();
  FakeClock::Set("2026-12-14 02:10:46");
  Convert();
  EXPECT_EQ(StoreText(), Array(kNewRow));
  FakeClock::Set("2026-12-14 02:10:47");
  Convert();
  EXPECT_EQ(StoreText(), "[]");
}

// Reports of consecutive days overlap, and the service may have been restarted between them.
TEST_F(ConvertPowerLogXmltoJson, KeepsEachRowOnceWithItsLatestEnergyOverSeveralDays) {
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

TEST_F(ConvertPowerLogXmltoJson, RereadsTheStoreAtEachPass) {
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

TEST_F(ConvertPowerLogXmltoJson, NamesOnlyNewRowsFromTheCurrentCatalogue) {
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

// Each pass drops the stored and reported rows that are too old at its own time.
TEST_F(ConvertPowerLogXmltoJson, PrunesAtThirtyDaysBeforeEachPass) {
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

TEST_F(ConvertPowerLogXmltoJson, KeepsEnergyBeyond32BitsForOneRun) {
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

TEST_F(ConvertPowerLogXmltoJson, NamesPackagesFromTheCatalogue) {
  helper.uwpApps.Replace(PackagedApps{{"new", {"Shown", ""}}});
  WriteReport(kReport);
  Convert();
  EXPECT_NE(StoreText().find(R"("DisplayName":"Shown")"), std::string::npos);
}

namespace {

std::string g_queriedDrive;

DWORD WINAPI FakeDevice(const char* drive, char* target, DWORD capacity) {
  constexpr char kTarget[] = "\\Device\\Fake\0";  // a list of texts ends with an empty one
  g_queriedDrive = drive;
  if (capacity < sizeof(kTarget)) return 0;
  std::copy(std::begin(kTarget), std::end(kTarget), target);
  return sizeof(kTarget);
}

}  // namespace

TEST_F(ConvertPowerLogXmltoJson, MapsTheSystemDriveOnly) {
  const Standin::ImportPatch device("QueryDosDeviceA", &FakeDevice);
  WriteReport(
      "<Report><Row AppId='\\Device\\Fake\\Stra\xC3\x9F"
      "e\\none.exe'"
      " TimeStamp='2026-11-14:02:00:00'/>"
      "<Row AppId='\\Device\\Other\\none.exe' TimeStamp='2026-11-14:02:00:00'/></Report>");
  Convert();
  EXPECT_EQ(g_queriedDrive, "C:");
  EXPECT_EQ(StoreText(), R"([{"Name":"\\Device\\Fake\\Stra)"
                         "\xC3\x9F"
                         R"(e\\none.exe","DisplayName":"",)"
                         R"("TimeStamp":"2026-11-14:02:00:00","TotalEnergy":0},)"
                         R"({"Name":"\\Device\\Other\\none.exe","DisplayName":"",)"
                         R"("TimeStamp":"2026-11-14:02:00:00","TotalEnergy":0}])");
}

TEST_F(ConvertPowerLogXmltoJson, StoresTheNameInAProgramsVersionResource) {
  CopyProgram(L"program.exe");
  EXPECT_EQ(DisplayNameOf(DeviceFolder() + "program.exe"), "Brook Browser");
}

TEST_F(ConvertPowerLogXmltoJson, StoresNoNameForAPathWithTheDevicePrefixFurtherOn) {
  CopyProgram(L"program.exe");
  EXPECT_EQ(DisplayNameOf(DeviceFolder("\\Device\\Mup") + "program.exe"), "");
}

// The path is passed to the narrow calls as UTF-8, and they read it in the code page of the system.
TEST_F(ConvertPowerLogXmltoJson, StoresNoNameForAPathOutsideAscii) {
  if (GetACP() == CP_UTF8) GTEST_SKIP() << "with this code page the file is found";
  CopyProgram(L"Stra\x00DF\x0065.exe");
  EXPECT_EQ(DisplayNameOf(DeviceFolder() + "Stra\xC3\x9F"
                                           "e.exe"),
            "");
}
