#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstddef>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "export/export_text.h"
#include "host/export/hostile_names.h"
#include "snapshot/application_shares.h"

using namespace WattleafHost;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A machine with one figure of each kind.
Snapshot OneOfEach() {
  Snapshot snapshot;
  snapshot.hostVersion = "1.2.3";
  snapshot.machine = "alder";
  snapshot.takenAt = "2026-11-22T14:20:00+01:00";
  snapshot.zone = "Zone";
  snapshot.supportState = -1;
  snapshot.averageDayWh = 2.5;
  snapshot.trees = 0.5;
  snapshot.bookedDaysOfAverage = 1;
  snapshot.ledger = {{"2026-07-01", "2026-07-01T00:00:00+02:00", 12.5, true}};
  snapshot.hours = {{"13:00", "2026-11-22T13:00:00+01:00", 0.0, true}};
  snapshot.days = {{"Sat", "2026-11-21T00:00:00+01:00", 0.0, false}};
  snapshot.months = {{"Nov", "2026-11-01T00:00:00+01:00", 0.25, true}};
  snapshot.applications = ApplicationShares{{{"Meadow", "C:\\m.png", 37.5}}, 62.5, 30};
  return snapshot;
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The lines without what all of them begin with.
std::vector<std::string> TailsOf(const std::string& text, const std::string& head) {
  std::vector<std::string> tails;
  for (const std::string& line : LinesOf(text)) {
    EXPECT_THAT(line, StartsWith(head));
    tails.push_back(line.substr(std::min(line.size(), head.size())));
  }
  return tails;
}

Snapshot WithNames(const std::vector<std::string>& names) {
  Snapshot snapshot = OneOfEach();
  snapshot.applications->largest.clear();
  for (const std::string& name : names) snapshot.applications->largest.push_back({name, "", 1.0});
  return snapshot;
}

/// The fields of the text's records, read as RFC 4180 describes them.
std::vector<std::vector<std::string>> ReadCsv(const std::string& text) {
  std::vector<std::vector<std::string>> records;
  std::vector<std::string> record(1);
  bool isQuoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (isQuoted && c == '"' && text[i + 1] == '"') {
      record.back() += text[++i];
    } else if (c == '"') {
      isQuoted = !isQuoted;
    } else if (isQuoted) {
      record.back() += c;
    } else if (c == ',') {
      record.emplace_back();
    } else if (c == '\n') {
      records.push_back(record);
      record.assign(1, "");
    } else if (c != '\r') {
      record.back() += c;
    }
  }
  return records;
}

}  // namespace

TEST(ExportNdjson, HasOneObjectForEachFigure) {
  const auto tails = TailsOf(ExportNdjson(OneOfEach()),
                             R"({"formatVersion":1,"host":"1.2.3","machine":"alder",)"
                             R"("time":"2026-11-22T14:20:00+01:00","zone":"Zone","kind":)");
  const std::vector<std::string> expected = {
      R"("platformSupport","begin":null,"label":null,"name":null,"days":null,"value":-1.0,"unit":"state","missing":null})",
      R"("averageDay","begin":null,"label":null,"name":null,"days":null,"value":2.5,"unit":"Wh","missing":null})",
      R"("treesSaved","begin":null,"label":null,"name":null,"days":null,"value":0.5,"unit":"trees","missing":null})",
      R"("ledgerDay","begin":"2026-07-01T00:00:00+02:00","label":"2026-07-01","name":null,"days":null,"value":12.5,"unit":"Wh","missing":null})",
      R"("hour","begin":"2026-11-22T13:00:00+01:00","label":"13:00","name":null,"days":null,"value":0.0,"unit":"Wh","missing":null})",
      R"("day","begin":"2026-11-21T00:00:00+01:00","label":"Sat","name":null,"days":null,"value":null,"unit":"Wh","missing":"not booked"})",
      R"("month","begin":"2026-11-01T00:00:00+01:00","label":"Nov","name":null,"days":null,"value":0.25,"unit":"Wh","missing":null})",
      R"("application","begin":null,"label":"1","name":"Meadow","days":30,"value":37.5,"unit":"percent","missing":null})",
      R"("everythingElse","begin":null,"label":null,"name":null,"days":30,"value":62.5,"unit":"percent","missing":null})",
  };
  EXPECT_EQ(tails, expected);
}

TEST(ExportCsv, HasTheSameRowsAfterALineOfNames) {
  EXPECT_EQ(
      ExportCsv(OneOfEach()),
      "formatVersion,host,machine,time,zone,kind,begin,label,name,days,value,unit,missing\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,platformSupport,,,,,-1,state,\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,averageDay,,,,,2.5,Wh,\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,treesSaved,,,,,0.5,trees,\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,ledgerDay,2026-07-01T00:00:00+02:00,"
      "2026-07-01,,,12.5,Wh,\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,hour,2026-11-22T13:00:00+01:00,13:00,,,0,"
      "Wh,\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,day,2026-11-21T00:00:00+01:00,Sat,,,,Wh,"
      "not booked\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,month,2026-11-01T00:00:00+01:00,Nov,,,"
      "0.25,Wh,\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,application,,1,Meadow,30,37.5,percent,\r\n"
      "1,1.2.3,alder,2026-11-22T14:20:00+01:00,Zone,everythingElse,,,,30,62.5,percent,\r\n");
}

TEST(ExportCsv, SaysWhyAValueIsMissing) {
  Snapshot snapshot = OneOfEach();
  snapshot.bookedDaysOfAverage = 0;
  snapshot.hours[0].hasData = false;
  snapshot.months[0].hasData = false;
  snapshot.applications.reset();
  snapshot.applicationsProblem = kNoStore;
  const std::string text = ExportCsv(snapshot);
  EXPECT_THAT(text, HasSubstr(",averageDay,,,,,,Wh,not booked\r\n"));
  EXPECT_THAT(text, HasSubstr(",treesSaved,,,,,,trees,not booked\r\n"));
  EXPECT_THAT(text, HasSubstr(",13:00,,,,Wh,no counted samples\r\n"));
  EXPECT_THAT(text, HasSubstr(",Nov,,,,Wh,not booked\r\n"));
  EXPECT_THAT(text, HasSubstr(",application,,,,,,percent,no store\r\n"));
  EXPECT_THAT(text, testing::Not(HasSubstr("everythingElse")));
}

TEST(ExportCsv, BlamesTheLedgerIfItCannotBeRead) {
  Snapshot snapshot = OneOfEach();
  snapshot.bookedDaysOfAverage = 0;
  snapshot.ledgerProblem = kLedgerUnreadable;
  const std::string text = ExportCsv(snapshot);
  EXPECT_THAT(text, HasSubstr(",averageDay,,,,,,Wh,ledger not readable\r\n"));
  EXPECT_THAT(text, HasSubstr(",Sat,,,,Wh,ledger not readable\r\n"));
}

TEST(ExportNdjson, HasNoValueForANumberThatIsNotFinite) {
  Snapshot snapshot = OneOfEach();
  snapshot.trees = std::numeric_limits<double>::infinity();
  EXPECT_THAT(ExportNdjson(snapshot),
              HasSubstr(R"("value":null,"unit":"trees","missing":"not a finite number"})"));
}

TEST(ExportNdjson, KeepsHostileNamesOnOneLineEach) {
  const auto lines = LinesOf(ExportNdjson(WithNames(TestSupport::kHostileNames)));
  ASSERT_EQ(lines.size(), 7 + TestSupport::kHostileNames.size() + 1);
  for (std::size_t i = 0; i < TestSupport::kHostileNames.size(); ++i) {
    rapidjson::Document row;
    ASSERT_FALSE(row.Parse(lines[7 + i].c_str()).HasParseError()) << lines[7 + i];
    const auto& name = row["name"];
    EXPECT_EQ(std::string(name.GetString(), name.GetStringLength()), TestSupport::kHostileNames[i]);
  }
}

TEST(ExportCsv, KeepsHostileNamesInOneFieldEach) {
  const auto records = ReadCsv(ExportCsv(WithNames(TestSupport::kHostileNames)));
  ASSERT_EQ(records.size(), 8 + TestSupport::kHostileNames.size() + 1);
  for (std::size_t i = 0; i < TestSupport::kHostileNames.size(); ++i) {
    const std::string& name = TestSupport::kHostileNames[i];
    ASSERT_EQ(records[8 + i].size(), 13u) << name;
    EXPECT_EQ(records[8 + i][8], name.starts_with('=') ? "'" + name : name);
  }
}
