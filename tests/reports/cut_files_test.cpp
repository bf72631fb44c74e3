// The 30-day store and the tool's report, cut at each of their bytes, as a full disk or the end of
// a process leaves them.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <string>

#include "base/scratch_folder.h"
#include "reports/power_store.h"
#include "reports/report_reader.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

std::string StoredRow(const std::string& name, const std::string& time, int energy) {
  return R"({"Name":")" + name + R"(","DisplayName":"","TimeStamp":")" + time +
         R"(","TotalEnergy":)" + std::to_string(energy) + "}";
}

const std::string kReported =
    StoredRow("a", "2026-11-14:02:00:00", 1) + "," + StoredRow("b", "2026-11-14:03:00:00", 20);
const std::string kReportedBefore = StoredRow("b", "2026-11-14:03:00:00", 7);
/// Rows that the system does not report any more.
std::string OlderRows() {
  std::string rows = StoredRow("Meadow \\\"Office\\\" 6\\\\7", "2026-10-30:22:15:00", 4000);
  for (int hour = 10; hour < 20; ++hour) {
    const std::string time = "2026-11-01:" + std::to_string(hour) + ":30:00";
    rows += "," + StoredRow(R"(\\Device\\C\\b.exe)", time, 300 + hour);
  }
  return rows;
}
const std::string kOlder = OlderRows();

const std::string kOldStore = "[" + kReportedBefore + "," + kOlder + "]";

/// The steps of a conversion, with its own functions, at 2026-11-14 10:30:15.
class CutFiles : public ReportReader {
 protected:
  static ReportingPeriod Month() { return {At("2026-11-14:10:30:15"), 30}; }
  static std::string WholeReport() {
    return Report(Row("a", "02:00:00", Energy("1")) + Row("b", "03:00:00", Energy("20")));
  }

  /// The store that follows from a report and an older store.
  static std::string Converted(const std::string& report, const std::string& store) {
    const ScratchFolder folder;
    const std::wstring path = folder.File("store.json").wstring();
    WriteBytes(folder.File("report.xml"), report);
    WriteBytes(folder.File("store.json"), store);
    const PackagedApps none;
    DisplayNames names("\\Device\\C", none, [](const std::string&) { return "File"; });
    PowerLog log;
    ReadPowerReport(folder.File("report.xml").wstring(), Month(), names, log);
    if (const auto rows = TryReadPowerStore(path, Month())) MergePowerStore(*rows, log);
    EXPECT_TRUE(WritePowerStore(path, log));
    return ReadBytes(folder.File("store.json"));
  }

  static bool IsRead(const std::string& store) {
    const ScratchFolder folder;
    WriteBytes(folder.File("store.json"), store);
    return TryReadPowerStore(folder.File("store.json").wstring(), Month()).has_value();
  }
};

using CutStore = CutFiles;
using CutReport = CutFiles;

}  // namespace

TEST_F(CutStore, WithAllItsBytesKeepsTheOlderRows) {
  EXPECT_EQ(Converted(WholeReport(), kOldStore), "[" + kReported + "," + kOlder + "]");
  EXPECT_TRUE(IsRead(kOldStore));
}

TEST_F(CutStore, IsReplacedByTheReportedRowsAtEachLength) {
  for (std::size_t length = 0; length < kOldStore.size(); ++length) {
    const std::string store = kOldStore.substr(0, length);
    ASSERT_EQ(Converted(WholeReport(), store), "[" + kReported + "]") << length;
    ASSERT_FALSE(IsRead(store)) << length;
  }
  std::printf("figures: store cut at %zu lengths: the reported rows only; whole: older rows too\n",
              kOldStore.size());
}

TEST_F(CutStore, FollowedByZerosIsReplacedAtEachLength) {
  for (std::size_t length = 0; length < kOldStore.size(); ++length) {
    const std::string zeros(kOldStore.size() - length, '\0');
    ASSERT_EQ(Converted(WholeReport(), kOldStore.substr(0, length) + zeros), "[" + kReported + "]")
        << length;
  }
  std::printf("figures: store with zeros from %zu places on: the reported rows only\n",
              kOldStore.size());
}

TEST_F(CutReport, AddsNoRowAndKeepsThoseOfTheStoreAtEachLength) {
  const std::string whole = WholeReport();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    ASSERT_EQ(Converted(whole.substr(0, length), kOldStore), kOldStore) << length;
  }
  std::printf("figures: report cut at %zu lengths: no row of it counts, the store stays\n",
              whole.size());
}
