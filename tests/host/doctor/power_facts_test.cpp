#include "doctor/power_facts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/date_text.h"
#include "base/scratch_folder.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace WattleafHost;
using TestSupport::ScratchFolder;
using TestSupport::WriteBytes;

namespace {

constexpr char kDrive[] = "\\Device\\HarddiskVolume3";

DateTime Noon(const std::string& date) {
  DateTime time;
  return ParseDateTime(time, (date + ":12:00:00").c_str(), kTimeStampFormat);
}

std::string Row(const std::string& app, const std::string& date) {
  return "<Row AppId=\"" + app + "\" TimeStamp=\"" + date +
         ":10:00:00\"><TotalEnergyConsumption Value=\"5\"/></Row>";
}

/// The facts of a report with these bytes, on 2024-03-31. Only "a.exe" has a description.
ReportFacts FactsOf(const std::string& bytes) {
  const ScratchFolder folder;
  const auto path = folder.File("report.xml");
  WriteBytes(path, bytes);
  const PackagedApps packages;
  DisplayNames names(kDrive, packages, [](const std::string& program) {
    return program.ends_with("a.exe") ? std::string("A program") : std::string();
  });
  return ReadReportFacts(path.wstring(), Noon("2024-03-31"), names);
}

StoreFacts CountedStore(const std::string& json) {
  const ScratchFolder folder;
  const auto path = folder.File("store.json");
  WriteBytes(path, json);
  const auto store = TryReadPowerStore(path.wstring(), ReportingPeriod(Noon("2024-03-31"), 30));
  StoreFacts facts;
  if (store) CountStoreRows(*store, facts);
  return facts;
}

std::string RowOf(const std::string& name, const std::string& displayName) {
  return R"({"Name":")" + name + R"(","DisplayName":")" + displayName +
         R"(","TimeStamp":"2024-03-30:10:00:00","TotalEnergy":5})";
}

}  // namespace

TEST(ReadReportFacts, CountsRowsOfAnyTimeOfThePeriodAndWithAName) {
  const std::string drive = kDrive;
  const ReportFacts facts = FactsOf("<Report>" + Row(drive + "\\a.exe", "2024-03-30") +
                                    Row(drive + "\\b.exe", "2024-03-30") +
                                    Row(drive + "\\a.exe", "2023-01-30") + "</Report>");
  EXPECT_EQ(facts.state, ReportFacts::State::kRead);
  EXPECT_EQ(facts.rows, 3U);
  EXPECT_EQ(facts.rowsOfPeriod, 2U);
  EXPECT_EQ(facts.namedRows, 1U);
}

TEST(ReadReportFacts, NamesATextThatIsNoXml) {
  for (const char* bytes : {"", "<Report><Row", "no report"}) {
    EXPECT_EQ(FactsOf(bytes).state, ReportFacts::State::kNoXml) << bytes;
  }
}

TEST(CountStoreRows, NamesProgramsWithoutANameAndWithSeveral) {
  const StoreFacts facts =
      CountedStore("[" + RowOf("a", "A") + "," + RowOf("b", "") + "," + RowOf("c", "C") + "," +
                   RowOf("c", "New C") + "," + RowOf("d", "D") + "," + RowOf("d", "") + "," +
                   RowOf("", "") + "]");
  EXPECT_EQ(facts.rows, 7U);
  EXPECT_EQ(facts.namedRows, 4U);
  EXPECT_EQ(facts.unnamedPrograms, (std::vector<std::string>{"b", "d"}));
  EXPECT_EQ(facts.renamedPrograms, std::vector<std::string>{"c"});
}
