#include "ledger/power_ledger.h"

#include <gtest/gtest.h>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string>
#include <vector>

#include "ledger/fake_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr char kOldest[] = "2024-01-10";

/// The entries of a ledger as dates and values, in the order of the map.
using Entries = std::vector<std::pair<std::string, float>>;

Entries EntriesOf(const PowerLedger& ledger) {
  Entries entries;
  for (const auto& [day, energyWh] : ledger) entries.emplace_back(DateOf(day), energyWh);
  return entries;
}

Entries Loaded(const std::string& json) {
  PowerLedger ledger;
  LoadLedger(*Document(json), Day(kOldest), ledger);
  return EntriesOf(ledger);
}

std::string Text(const PowerLedger& ledger) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  LedgerDocument(ledger).Accept(writer);
  return buffer.GetString();
}

}  // namespace

TEST(OldestDay, Is210DaysBack) {
  EXPECT_EQ(kRetentionSeconds, 18144000);
  EXPECT_EQ(DateOf(OldestDay(Day("2024-08-07"))), kOldest);
}

TEST(LoadLedger, ReadsTheEntriesOfTheFile) {
  EXPECT_EQ(Loaded(R"([{"Key":"2024-03-01","Value":12.5},{"Key":"2024-03-02","Value":3}])"),
            (Entries{{"2024-03-01", 12.5F}, {"2024-03-02", 3.0F}}));
}

TEST(LoadLedger, DropsTheOldestDayAndEarlierDays) {
  EXPECT_EQ(Loaded(R"([{"Key":"2024-01-09","Value":1},{"Key":"2024-01-10","Value":2},)"
                   R"({"Key":"2024-01-11","Value":3}])"),
            (Entries{{"2024-01-11", 3.0F}}));
}

TEST(LoadLedger, ReplacesExistingEntriesAndTheLaterElementWins) {
  PowerLedger ledger{{Day("2024-03-01"), 1.0F}, {Day("2024-03-05"), 5.0F}};
  LoadLedger(*Document(R"([{"Key":"2024-03-01","Value":2},{"Key":"2024-03-01","Value":3}])"),
             Day(kOldest), ledger);
  EXPECT_EQ(EntriesOf(ledger), (Entries{{"2024-03-01", 3.0F}, {"2024-03-05", 5.0F}}));
}

TEST(LoadLedger, KeepsFutureDays) {
  EXPECT_EQ(Loaded(R"([{"Key":"2999-01-01","Value":1}])"), (Entries{{"2999-01-01", 1.0F}}));
}

TEST(LoadLedger, LeavesTheMapUnchangedForARootThatIsNotAnArray) {
  for (const char* json : {"{}", "null", "5", R"({"Key":"2024-03-01","Value":1})"}) {
    PowerLedger ledger{{Day("2024-03-05"), 5.0F}};
    LoadLedger(*Document(json), Day(kOldest), ledger);
    EXPECT_EQ(EntriesOf(ledger), (Entries{{"2024-03-05", 5.0F}})) << json;
  }
}

TEST(LoadLedger, SkipsElementsWithoutAStringKeyOrANumberValue) {
  for (const char* element :
       {"null", "1", "[]", "{}", R"({"Key":"2024-03-01"})", R"({"Value":1})",
        R"({"Key":20240301,"Value":1})", R"({"Key":null,"Value":1})",
        R"({"Key":"2024-03-01","Value":"1"})", R"({"Key":"2024-03-01","Value":null})"}) {
    EXPECT_EQ(Loaded(List({element, R"({"Key":"2024-03-02","Value":2})"})),
              (Entries{{"2024-03-02", 2.0F}}))
        << element;
  }
}

TEST(LoadLedger, DropsKeysThatAreNotDates) {
  for (const char* key : {"", "today", "03/01/2024", "0000-00-00", "99999-01-01", "3500-01-01"}) {
    EXPECT_EQ(Loaded(std::string(R"([{"Key":")") + key + R"(","Value":1}])"), Entries()) << key;
  }
}

TEST(LoadLedger, ReadsAValueBeyond32BitFloatAsZero) {
  EXPECT_EQ(Loaded(R"([{"Key":"2024-03-01","Value":1e39},{"Key":"2024-03-02","Value":-1e300}])"),
            (Entries{{"2024-03-01", 0.0F}, {"2024-03-02", 0.0F}}));
}

TEST(LedgerDocument, IsAnArrayOfKeyAndValueInAscendingOrder) {
  EXPECT_EQ(Text({{Day("2024-03-02"), 3.0F}, {Day("2023-12-31"), 12.5F}}),
            R"([{"Key":"2023-12-31","Value":12.5},{"Key":"2024-03-02","Value":3.0}])");
}

TEST(LedgerDocument, IsAnEmptyArrayForAnEmptyLedger) { EXPECT_EQ(Text({}), "[]"); }

TEST(LedgerDocument, WritesTheFloatWithAllDigitsOfTheDouble) {
  EXPECT_EQ(Text({{Day("2024-03-02"), 0.1F}}),
            R"([{"Key":"2024-03-02","Value":0.10000000149011612}])");
}

TEST(LedgerDocument, IsReadBackByLoadLedger) {
  const PowerLedger ledger{{Day("2024-03-01"), 0.1F}, {Day("2024-03-02"), 6.0F / 0.88F}};
  EXPECT_EQ(Loaded(Text(ledger)), EntriesOf(ledger));
}
