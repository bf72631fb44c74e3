#include "doctor/diagnosis.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

using namespace WattleafHost;

namespace {

DayFacts HealthyDay(const std::string& date) {
  DayFacts day;
  day.file = {date, SampleFileState::kRead, "", 480, false};
  day.counted = 470;
  day.booked = 460;
  day.largestGapSeconds = 60;
  day.energyWh = 100.0F;
  day.bookedWh = 100.0F;
  day.relation = LedgerRelation::kEqual;
  return day;
}

/// A machine on which all is well, whose collector was started.
MachineFacts Healthy() {
  MachineFacts facts;
  facts.version = "1.2.3";
  facts.now = "2026-11-22T10:00:00+01:00";
  facts.platform.firmwareFlag = true;
  facts.platform.oemMarker = true;
  facts.folder.path = "C:\\Data";
  facts.folder.place = {PlaceFacts::State::kFolder, true, 1000};
  facts.folder.writers = {"SYSTEM", "Administrators"};
  facts.collector.path = "C:\\Program Files\\W\\C.dll";
  facts.collector.exists = true;
  facts.collector.signatures = {{"Maker", "30 82", 0, true}};
  facts.collector.isAcceptedBySystem = true;
  facts.collector.isKeyAccepted = true;
  facts.collector.isPlaceAllowed = true;
  facts.collector.loadError = 0;
  facts.collector.hasFactory = true;
  facts.collector.status = 1;
  facts.tool.path = "C:\\windows\\system32\\powercfg.exe";
  facts.tool.wasRun = true;
  facts.tool.report = {ReportFacts::State::kRead, 20, 10, 5};
  facts.store.place = {PlaceFacts::State::kPlain, true, 100'000};
  facts.store.isRead = true;
  facts.store.rows = 12;
  facts.store.namedRows = 8;
  facts.ledger.place = {PlaceFacts::State::kPlain, true, 99'990};
  facts.ledger.state = LedgerState::kRead;
  facts.ledger.days = 30;
  facts.days = {HealthyDay("2026-11-22"), HealthyDay("2026-11-21")};
  return facts;
}

/// The causes that are not "fine", in order.
std::vector<std::string> CausesOf(const MachineFacts& facts) {
  std::vector<std::string> causes;
  for (const Finding& finding : Diagnose(facts)) {
    if (finding.cause != "fine") causes.push_back(finding.cause);
    EXPECT_NE(finding.found, "") << finding.cause;
    EXPECT_NE(finding.means, "") << finding.cause;
    EXPECT_EQ(finding.severity == Severity::kFine, finding.cause == "fine");
    if (finding.severity != Severity::kFine) {
      EXPECT_NE(finding.remedy, "") << finding.cause;
    }
  }
  return causes;
}

using Change = std::function<void(MachineFacts&)>;

struct Case {
  const char* cause;
  bool canMeasure;
  Change change;
};

/// Makes the collector one that the library refuses, with the system's verdict.
Change Refuse(std::uint32_t verdict, bool isSigned) {
  return [=](MachineFacts& facts) {
    facts.collector.isAcceptedBySystem = false;
    facts.collector.systemVerdict = verdict;
    if (!isSigned) facts.collector.signatures.clear();
    facts.collector.loadError.reset();
    facts.collector.status.reset();
  };
}

Change Status(int status) {
  return [=](MachineFacts& facts) { facts.collector.status = status; };
}

Change ToolReport(ReportFacts report) {
  return [=](MachineFacts& facts) { facts.tool.report = report; };
}

Change FirstDay(SampleFileState state) {
  return [=](MachineFacts& facts) {
    facts.days[0].file.state = state;
    facts.days[0].bookedWh.reset();
  };
}

using ReportState = ReportFacts::State;
using PlaceState = PlaceFacts::State;

const std::vector<Case>& Cases() {
  static const std::vector<Case> kCases{
      {"firmware-flag-clear", false, [](auto& f) { f.platform.firmwareFlag = false; }},
      {"firmware-not-reached", false,
       [](auto& f) {
         f.platform.firmwareFlag = false;
         f.platform.firmwareWarnings = {"ConnectServer failed"};
       }},
      {"oem-marker-missing", false, [](auto& f) { f.platform.oemMarker = false; }},
      {"oem-strings-not-read", false,
       [](auto& f) {
         f.platform.oemMarker = false;
         f.platform.oemWarnings = {"ExecQuery failed"};
       }},
      {"data-folder-missing", true, [](auto& f) { f.folder.place.state = PlaceState::kMissing; }},
      {"data-folder-place-taken", false,
       [](auto& f) { f.folder.place.state = PlaceState::kPlain; }},
      {"data-folder-not-writable", false, [](auto& f) { f.folder.place.isWritable = false; }},
      {"collector-missing", false, [](auto& f) { f.collector = {}; }},
      {"collector-unsigned", false, Refuse(0x800B0100, false)},
      {"collector-altered", false, Refuse(0x80096010, false)},
      {"collector-unknown-root", false, Refuse(0x800B0109, true)},
      {"collector-not-verified", false, Refuse(0x80092026, false)},
      {"collector-other-key", false,
       [](auto& f) {
         f.collector.isKeyAccepted = false;
         f.collector.signatures[0].isKeyAccepted = false;
       }},
      {"collector-place", false, [](auto& f) { f.collector.isPlaceAllowed = false; }},
      {"collector-not-loadable", false, [](auto& f) { f.collector.loadError = 126; }},
      {"collector-no-factory", false, [](auto& f) { f.collector.hasFactory = false; }},
      {"collector-not-asked", true, [](auto& f) { f.collector.status.reset(); }},
      {"collector-not-started", false,
       [](auto& f) { f.collector.startProblem = "OnLoad returned false"; }},
      {"collector-status-2", false, Status(2)},
      {"collector-status-5", false, Status(5)},
      {"collector-device", false, Status(0)},
      {"collector-firmware", false, Status(-1)},
      {"tool-missing", true, [](auto& f) { f.tool.path = ""; }},
      {"tool-not-run", true, [](auto& f) { f.tool.wasRun = false; }},
      {"tool-failed", true, [](auto& f) { f.tool.status = 7; }},
      {"tool-no-report", true, ToolReport({ReportState::kMissing, 0, 0, 0})},
      {"report-broken", true, ToolReport({ReportState::kNoXml, 0, 0, 0})},
      {"report-empty", true, ToolReport({ReportState::kRead, 0, 0, 0})},
      {"report-old", true, ToolReport({ReportState::kRead, 9, 0, 0})},
      {"report-unnamed", true, ToolReport({ReportState::kRead, 9, 9, 0})},
      {"report-unreadable", true, [](auto& f) { f.leftReport.state = ReportState::kUnreadable; }},
      {"report-left", true,
       [](auto& f) {
         f.leftReport = {ReportState::kRead, 9, 9, 1};
       }},
      {"store-missing", true, [](auto& f) { f.store.place = {}; }},
      {"store-place-taken", false, [](auto& f) { f.store.place.state = PlaceState::kLink; }},
      {"store-not-readable", true, [](auto& f) { f.store.place.state = PlaceState::kUnreadable; }},
      {"store-not-writable", false, [](auto& f) { f.store.place.isWritable = false; }},
      {"store-unreadable", true, [](auto& f) { f.store.isRead = false; }},
      {"store-empty", true, [](auto& f) { f.store.rows = 0; }},
      {"store-unnamed", true, [](auto& f) { f.store.namedRows = 0; }},
      {"program-unnamed", true, [](auto& f) { f.store.unnamedPrograms = {"a.exe"}; }},
      {"program-renamed", true, [](auto& f) { f.store.renamedPrograms = {"b.exe"}; }},
      {"ranking-old", true, [](auto& f) { f.ledger.place.changedInstant = 100'000 + 21'601; }},
      {"ledger-missing", true,
       [](auto& f) {
         f.ledger.state = LedgerState::kAbsent;
         f.ledger.place = {};
       }},
      {"ledger-unreadable", true, [](auto& f) { f.ledger.state = LedgerState::kUnreadable; }},
      {"ledger-not-writable", false, [](auto& f) { f.ledger.place.isWritable = false; }},
      {"ledger-place-taken", false,
       [](auto& f) {
         f.ledger.place.state = PlaceState::kFolder;
         f.ledger.state = LedgerState::kLeftOut;
       }},
      {"samples-absent", true, FirstDay(SampleFileState::kAbsent)},
      {"samples-not-read", true, FirstDay(SampleFileState::kLeftOut)},
      {"samples-not-decrypted", true, FirstDay(SampleFileState::kNotDecrypted)},
      {"samples-no-list", true, FirstDay(SampleFileState::kNoList)},
      {"samples-too-far-apart", true,
       [](auto& f) {
         f.days[0].booked = 0;
         f.days[0].gaps = 20;
         f.days[0].largestGapSeconds = 900;
       }},
      {"clock-back", false, [](auto& f) { f.daysAhead = 1; }},
  };
  return kCases;
}

}  // namespace

TEST(Diagnosis, FindsNothingOnAHealthyMachine) {
  const MachineFacts facts = Healthy();
  EXPECT_EQ(CausesOf(facts), std::vector<std::string>());
  EXPECT_TRUE(CanMeasure(Diagnose(facts)));
}

TEST(Diagnosis, NamesEachCauseAloneAndSaysWhetherTheMachineCanMeasure) {
  for (const auto& [cause, canMeasure, change] : Cases()) {
    MachineFacts facts = Healthy();
    change(facts);
    EXPECT_EQ(CausesOf(facts), std::vector<std::string>{cause});
    EXPECT_EQ(CanMeasure(Diagnose(facts)), canMeasure) << cause;
  }
}

TEST(Diagnosis, StopsIfTheSamplesOfMostDaysAreTooFarApart) {
  MachineFacts facts = Healthy();
  for (DayFacts& day : facts.days) {
    day.booked = 0;
    day.gaps = 20;
  }
  EXPECT_EQ(CausesOf(facts),
            (std::vector<std::string>{"samples-too-far-apart", "samples-too-far-apart",
                                      "sample-period-too-long"}));
  EXPECT_FALSE(CanMeasure(Diagnose(facts)));
}

TEST(Diagnosis, TakesADayWithASingleSampleAsNormal) {
  MachineFacts facts = Healthy();
  facts.days[0].booked = 0;
  facts.days[0].gaps = 0;
  EXPECT_EQ(CausesOf(facts), std::vector<std::string>());
}

TEST(Diagnosis, TakesAMissingFileOfABookedDayAsNormal) {
  MachineFacts facts = Healthy();
  facts.days[1].file.state = SampleFileState::kAbsent;
  EXPECT_EQ(CausesOf(facts), std::vector<std::string>());
}

TEST(Diagnosis, LetsTheStoreBeYoungerThanTheLedgerOrAsOldAsAPassIsLong) {
  MachineFacts facts = Healthy();
  facts.ledger.place.changedInstant = 100'000 + 21'600;
  EXPECT_EQ(CausesOf(facts), std::vector<std::string>());
}

TEST(Diagnosis, ShowsTheSignerTheKeyAndTheVerdictOfEachSignature) {
  const auto findings = Diagnose(Healthy());
  EXPECT_TRUE(std::ranges::any_of(findings, [](const Finding& finding) {
    return finding.found == "signed by Maker, key 30 82..., verdict 0x00000000, an accepted key";
  }));
}

TEST(Diagnosis, NamesFivePrograms) {
  MachineFacts facts = Healthy();
  facts.store.unnamedPrograms = {"a", "b", "c", "d", "e", "f", "g"};
  for (const Finding& finding : Diagnose(facts)) {
    if (finding.cause == "program-unnamed") {
      EXPECT_EQ(finding.found, "a, b, c, d, e and 2 more");
    }
  }
}

TEST(DiagnosisText, ShowsWhatWasFoundWhatItMeansAndWhatToDo) {
  MachineFacts facts = Healthy();
  facts.tool.status = 7;
  const std::string text = ToText(facts, Diagnose(facts));
  EXPECT_EQ(text.find("wattleaf_host 1.2.3 doctor, 2026-11-22T10:00:00+01:00\n"), 0U);
  EXPECT_NE(
      text.find("problem energy-tool C:\\windows\\system32\\powercfg.exe ended with status 7\n"
                "                    cause: tool-failed\n"
                "                    means: the ranking gets nothing new; the other commands "
                "are not concerned\n"
                "                    do:    run doctor as administrator"),
      std::string::npos)
      << text;
  EXPECT_NE(text.find("Lines that the log of a healthy machine has too\n  BeginsWith() failed"),
            std::string::npos);
  EXPECT_NE(text.find("\nThis machine can measure.\n"), std::string::npos);
  facts.daysAhead = 3;
  EXPECT_NE(ToText(facts, Diagnose(facts)).find("\nThis machine cannot measure"),
            std::string::npos);
}

TEST(DiagnosisJson, HasEachFindingAndTheNormalLines) {
  MachineFacts facts = Healthy();
  facts.daysAhead = 3;
  rapidjson::Document json;
  json.Parse(ToJson(facts, Diagnose(facts)).c_str());
  ASSERT_TRUE(json.IsObject());
  EXPECT_EQ(json["format"].GetInt(), 1);
  EXPECT_FALSE(json["canMeasure"].GetBool());
  const auto& clock = json["findings"][0];
  EXPECT_STREQ(clock["severity"].GetString(), "stops");
  EXPECT_STREQ(clock["step"].GetString(), "clock");
  EXPECT_STREQ(clock["cause"].GetString(), "clock-back");
  EXPECT_NE(std::string(clock["found"].GetString()).find("3 days after today"), std::string::npos);
  EXPECT_STREQ(clock["do"].GetString(), "set the clock");
  EXPECT_STREQ(json["findings"][1]["cause"].GetString(), "fine");
  EXPECT_EQ(json["normalLogLines"].Size(), NormalLogLines().size());
}
