// The reports that the stand-in of POWERCFG writes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/text_builders.h"
#include "installed_applications.h"
#include "report_model.h"
#include "report_text.h"
#include "tool_request.h"

namespace {

using namespace Standin;
using TestSupport::Fingerprint;

constexpr std::int64_t kNow = 1'794'652'215;  // 2026-11-14 10:30:15 UTC, a Saturday
constexpr char kPrefix[] = "\\Device\\HarddiskVolume3";

/// The time stamps are the seconds since 1970, so that tests can compare them.
ReportSettings Settings(std::uint64_t seed, int days, std::int64_t now = kNow) {
  return {
      seed,       days, now, kPrefix, [](std::int64_t instant) { return std::to_string(instant); },
      /*only=*/""};
}

std::string Text(const ReportRow& row) {
  const auto part = [](const std::optional<std::string>& text) { return text.value_or("(none)"); };
  return part(row.appId) + '|' + part(row.timeStamp) + '|' +
         (row.total ? part(row.total->value) : "(no element)") + '\n';
}

std::string Text(const std::vector<ReportRow>& rows) {
  std::string text;
  for (const ReportRow& row : rows) text += Text(row);
  return text;
}

bool HasTime(const ReportRow& row) {
  return row.timeStamp && !row.timeStamp->empty() && *row.timeStamp != "yesterday";
}

std::set<std::string> Identities(const std::vector<ReportRow>& rows) {
  std::set<std::string> ids;
  for (const ReportRow& row : rows) ids.insert(row.appId.value_or(""));
  return ids;
}

TEST(MakeReportRows, DependsOnSeedAndTimeOnly) {
  EXPECT_EQ(Text(MakeReportRows(Settings(1, 5))), Text(MakeReportRows(Settings(1, 5))));
  EXPECT_NE(Text(MakeReportRows(Settings(1, 5))), Text(MakeReportRows(Settings(2, 5))));
}

// The value was recorded once. A platform or library with another report fails this test.
TEST(MakeReportRows, IsTheSameOnEveryPlatform) {
  EXPECT_EQ(Fingerprint(Text(MakeReportRows(Settings(1, 60)))), 8'607'289'560'270'375'626ULL);
}

TEST(MakeReportRows, ReturnsHourlyRowsOfTheRequestedDaysInOrder) {
  std::int64_t last = kNow - 5 * 86400;
  const std::int64_t first = std::stoll(*MakeReportRows(Settings(1, 5)).front().timeStamp);
  for (const ReportRow& row : MakeReportRows(Settings(1, 5))) {
    if (!HasTime(row)) continue;
    const std::int64_t time = std::stoll(*row.timeStamp);
    EXPECT_GE(time, last);
    EXPECT_LE(time, kNow);
    EXPECT_EQ((time - first) % 3600, 0);
    last = time;
  }
}

TEST(MakeReportRows, IsEmptyForZeroDays) { EXPECT_TRUE(MakeReportRows(Settings(1, 0)).empty()); }

TEST(MakeReportRows, RepeatsEarlierHoursInTheReportOfTheNextDay) {
  const std::string today = Text(MakeReportRows(Settings(1, 5)));
  const std::string tomorrow = Text(MakeReportRows(Settings(1, 6, kNow + 86400)));
  // All but the newest hour, which was not yet complete.
  EXPECT_TRUE(tomorrow.starts_with(today.substr(0, today.size() * 9 / 10)));
  EXPECT_FALSE(tomorrow.starts_with(today));
}

TEST(MakeReportRows, LeavesHoursWithoutSomeApplications) {
  const auto rows = MakeReportRows(Settings(1, 30));
  std::set<std::string> hours;
  std::map<std::string, int> rowsOf;
  for (const ReportRow& row : rows) {
    if (HasTime(row)) hours.insert(*row.timeStamp);
    if (row.appId) ++rowsOf[*row.appId];
  }
  EXPECT_GT(hours.size(), 200U);
  EXPECT_LT(hours.size(), 30U * 24U) << "the notebook never sleeps";
  for (const auto& [appId, count] : rowsOf) {
    EXPECT_LT(count, static_cast<int>(hours.size())) << appId;
  }
}

TEST(MakeReportRows, ContainsEveryInstalledApplication) {
  const std::set<std::string> ids = Identities(MakeReportRows(Settings(1, 60)));
  for (const DesktopApp& app : kDesktopApps) {
    const std::string path = std::string(kPrefix) + '\\' + std::string(app.program);
    EXPECT_TRUE(ids.contains(path)) << path;
  }
  for (const PackagedApp& app : kPackagedApps) {
    // With the version of the installed package.
    const std::string fullName = std::string(app.name) + '_' + std::string(app.version) + "_x64__" +
                                 std::string(app.familySuffix);
    EXPECT_TRUE(std::any_of(ids.begin(), ids.end(), [&](const std::string& id) {
      return id == fullName || id.starts_with(fullName + '!');
    })) << app.name;
  }
}

TEST(MakeReportRows, ContainsEachApplicationOfAPackage) {
  const std::set<std::string> ids = Identities(MakeReportRows(Settings(1, 60)));
  for (const char* id : {"Hornbeam.Suite_16.0.0.0_x64__s2d5f8g1h4j7k!Writer",
                         "Hornbeam.Suite_16.0.0.0_x64__s2d5f8g1h4j7k!Sheets",
                         "Birch.Backup_3.3.0.0_x64__s2d5f8g1h4j7k!Service",
                         "Birch.Backup_3.3.0.0_x64__s2d5f8g1h4j7k!Panel",
                         "Otter.Chat_8.17.3.0_x64__m5t9yk3w7zc8n"}) {
    EXPECT_TRUE(ids.contains(id)) << id;
  }
}

TEST(MakeReportRows, ReportsTheSameRowsForASelectionOfApplications) {
  ReportSettings settings = Settings(1, 30);
  settings.only = "Plover|Finch.Music_3.1";
  const auto some = MakeReportRows(settings);
  std::string expected;
  for (const ReportRow& row : MakeReportRows(Settings(1, 30))) {
    const std::string id = row.appId.value_or("");
    if (id.find("Plover") != std::string::npos || id.starts_with("Finch.Music_3.1")) {
      expected += Text(row);
    }
  }
  std::string reported;
  for (const ReportRow& row : some) {
    if (row.appId) reported += Text(row);
  }
  EXPECT_FALSE(reported.empty());
  EXPECT_EQ(reported, expected);
}

TEST(MakeReportRows, ContainsSystemRowsAndProgramsOfOtherPlaces) {
  const std::set<std::string> ids = Identities(MakeReportRows(Settings(1, 60)));
  const char* const expected[] = {
      "",
      "Unknown",
      "System Interrupts",
      "System",
      "\\Device\\HarddiskVolume3\\windows\\system32\\svchost.exe [WinTide]",
      "Plum.Sketch_2.0.0.0_x64__n6s1d8k4q2v7h",
      "Otter.Chat_8.16.0.0_x64__m5t9yk3w7zc8n",
      "\\Device\\HarddiskVolume9\\Toolbox\\hammer.exe",
      "\\Device\\Mup\\attic\\Device\\HarddiskVolume3\\trunk.exe",
      "\\Device\\HarddiskVolume3\\Program Files\\\303\234berblick\\\303\274berblick.exe",
      "\304\214apek.Robot_1.0.7.0_x64__n6s1d8k4q2v7h!App",
  };
  for (const char* id : expected) EXPECT_TRUE(ids.contains(id)) << id;
}

/// The number of rows for which `holds` returns true.
template <typename Holds>
std::ptrdiff_t Count(const std::vector<ReportRow>& rows, Holds holds) {
  return std::count_if(rows.begin(), rows.end(), holds);
}

TEST(MakeReportRows, ContainsMalformedRowsOfEachKind) {
  for (const std::uint64_t seed : {1U, 2U, 3U}) {
    const auto rows = MakeReportRows(Settings(seed, 60));
    EXPECT_GT(rows.size(), 5'000U);
    EXPECT_GT(Count(rows, [](const ReportRow& row) { return !row.total; }), 50);
    EXPECT_GT(Count(rows, [](const ReportRow& row) { return row.total && !row.total->value; }), 50);
    EXPECT_GT(Count(rows, [](const ReportRow& row) { return !row.appId; }), 10);
    EXPECT_GT(Count(rows, [](const ReportRow& row) { return !row.timeStamp; }), 10);
    EXPECT_GT(Count(rows, [](const ReportRow& row) { return row.timeStamp == "yesterday"; }), 10);
    EXPECT_GT(Count(rows, [](const ReportRow& row) { return row.timeStamp == ""; }), 10);
  }
}

TEST(MakeReportRows, ContainsRepeatedIdentitiesWithAndWithoutEnergy) {
  const auto rows = MakeReportRows(Settings(1, 60));
  int adding = 0;
  int empty = 0;
  for (std::size_t i = 1; i < rows.size(); ++i) {
    if (rows[i].appId != rows[i - 1].appId || rows[i].timeStamp != rows[i - 1].timeStamp) continue;
    if (rows[i].total) ++adding;
    if (!rows[i].total) ++empty;
  }
  EXPECT_GT(adding, 50);
  EXPECT_GT(empty, 10);
}

TEST(MakeReportRows, EnergyOfAMonthFitsInto31Bits) {
  std::int64_t sum = 0;
  for (const ReportRow& row : MakeReportRows(Settings(1, 30))) {
    if (row.total && row.total->value) sum += std::stoll(*row.total->value);
  }
  EXPECT_GT(sum, 0);
  EXPECT_LT(sum, 0x7FFFFFFF);
}

TEST(EnergyReportText, WritesOnlyTheMembersThatARowHas) {
  const std::vector<ReportRow> rows = {
      {"A & \"B\" <C>", "2026-11-14:09:00:00", TotalEnergy{"12"}},
      {std::nullopt, std::nullopt, TotalEnergy{}},
      {"D", "", std::nullopt},
  };
  EXPECT_EQ(EnergyReportText(rows, ReportEncoding::kUtf8),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
            "<!-- Made by a stand-in. -->\r\n"
            "<ApplicationEnergy>\r\n"
            "  <Application AppId=\"A &amp; &quot;B&quot; &lt;C>\""
            " TimeStamp=\"2026-11-14:09:00:00\" Interactive=\"1\">\r\n"
            "    <ScreenEnergyConsumption Value=\"7\"/>\r\n"
            "    <TotalEnergyConsumption Value=\"12\"/>\r\n"
            "  </Application>\r\n"
            "  <Application Interactive=\"1\">\r\n"
            "    <ScreenEnergyConsumption Value=\"7\"/>\r\n"
            "    <TotalEnergyConsumption/>\r\n"
            "  </Application>\r\n"
            "  <Application AppId=\"D\" TimeStamp=\"\" Interactive=\"1\">\r\n"
            "    <ScreenEnergyConsumption Value=\"7\"/>\r\n"
            "  </Application>\r\n"
            "</ApplicationEnergy>\r\n");
}

TEST(FileBytes, Utf16HasAByteOrderMarkAndSurrogatePairs) {
  EXPECT_EQ(FileBytes("A\xC3\x9C\xE6\xB3\xA2\xF0\x9F\xA6\x89", ReportEncoding::kUtf16),
            std::string("\xFF\xFE"
                        "A\0\xDC\0\xE2\x6C\x3E\xD8\x89\xDD",
                        12));
  EXPECT_TRUE(EnergyReportText({}, ReportEncoding::kUtf16)
                  .starts_with("<?xml version=\"1.0\" encoding=\"UTF-16\"?>"));
}

TEST(FileBytes, Utf8HasNoByteOrderMark) {
  EXPECT_EQ(FileBytes("\xC3\x9C", ReportEncoding::kUtf8), "\xC3\x9C");
}

TEST(BrokenOff, EndsInsideATag) {
  const std::string whole = EnergyReportText({{"A", "B", TotalEnergy{"1"}}}, ReportEncoding::kUtf8);
  const std::string broken = BrokenOff(whole);
  EXPECT_TRUE(whole.starts_with(broken));
  EXPECT_GT(broken.size(), whole.size() / 4);
  EXPECT_GT(broken.rfind('<'), broken.rfind('>'));
}

TEST(TryReadRequest, AcceptsTheTwoCommandLines) {
  const auto power = TryReadRequest({L"/SRUMUTIL", L"/OUTPUT", L"a.xml", L"/XML"});
  ASSERT_TRUE(power);
  EXPECT_EQ(power->report, ToolReport::kApplicationEnergy);
  EXPECT_EQ(power->file, L"a.xml");
  const auto problems =
      TryReadRequest({L"/ENERGY", L"/OUTPUT", L"b.xml", L"/DURATION", L"60", L"/XML"});
  ASSERT_TRUE(problems);
  EXPECT_EQ(problems->report, ToolReport::kEnergyProblems);
  EXPECT_EQ(problems->file, L"b.xml");
}

TEST(TryReadRequest, RefusesOtherCommandLines) {
  const std::vector<std::wstring> others[] = {
      {},
      {L"/SRUMUTIL"},
      {L"/SRUMUTIL", L"/OUTPUT", L"a.xml"},
      {L"/SRUMUTIL", L"/OUTPUT", L"", L"/XML"},
      {L"/SRUMUTIL", L"/XML", L"/OUTPUT", L"a.xml"},
      {L"/srumutil", L"/OUTPUT", L"a.xml", L"/XML"},
      {L"/SRUMUTIL", L"/OUTPUT", L"a.xml", L"/CSV"},
      {L"/SRUMUTIL", L"/OUTPUT", L"a.xml", L"/XML", L"/XML"},
      {L"/SRUMUTIL", L"/OUTPUT", L"a.xml", L"/DURATION", L"60", L"/XML"},
      {L"/ENERGY", L"/OUTPUT", L"b.xml", L"/XML"},
      {L"/ENERGY", L"/OUTPUT", L"b.xml", L"/DURATION", L"", L"/XML"},
      {L"/ENERGY", L"/OUTPUT", L"b.xml", L"/DURATION", L"6x", L"/XML"},
      {L"/ENERGY", L"/OUTPUT", L"b.xml", L"/LENGTH", L"60", L"/XML"},
  };
  for (const auto& arguments : others) EXPECT_FALSE(TryReadRequest(arguments)) << arguments.size();
}

}  // namespace
