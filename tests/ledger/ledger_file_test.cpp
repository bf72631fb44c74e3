#include "ledger/ledger_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/scratch_folder.h"
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

/// Loads a file with this text.
void Load(const std::string& json, PowerLedger& ledger) {
  const ScratchFolder folder;
  WriteBytes(folder.File("ledger.json"), json);
  LoadLedger(folder.File("ledger.json").wstring(), Day(kOldest), ledger);
}

Entries Loaded(const std::string& json) {
  PowerLedger ledger;
  Load(json, ledger);
  return EntriesOf(ledger);
}

/// The text of the saved file.
std::string Text(const PowerLedger& ledger) {
  const ScratchFolder folder;
  EXPECT_TRUE(SaveLedger(folder.File("ledger.json").wstring(), ledger));
  return ReadBytes(folder.File("ledger.json"));
}

}  // namespace

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
  Load(R"([{"Key":"2024-03-01","Value":2},{"Key":"2024-03-01","Value":3}])", ledger);
  EXPECT_EQ(EntriesOf(ledger), (Entries{{"2024-03-01", 3.0F}, {"2024-03-05", 5.0F}}));
}

TEST(LoadLedger, KeepsFutureDays) {
  EXPECT_EQ(Loaded(R"([{"Key":"2999-01-01","Value":1}])"), (Entries{{"2999-01-01", 1.0F}}));
}

TEST(LoadLedger, LeavesTheMapUnchangedForAFileThatIsNotAnArray) {
  for (const char* json : {"", R"([{"Key":"2024-03-01","Value":1})", "{}", "null", "5",
                           R"({"Key":"2024-03-01","Value":1})"}) {
    PowerLedger ledger{{Day("2024-03-05"), 5.0F}};
    Load(json, ledger);
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

TEST(SaveLedger, IsAnArrayOfKeyAndValueInAscendingOrder) {
  EXPECT_EQ(Text({{Day("2024-03-02"), 3.0F}, {Day("2023-12-31"), 12.5F}}),
            R"([{"Key":"2023-12-31","Value":12.5},{"Key":"2024-03-02","Value":3.0}])");
}

TEST(SaveLedger, IsAnEmptyArrayForAnEmptyLedger) { EXPECT_EQ(Text({}), "[]"); }

TEST(SaveLedger, WritesTheFloatWithAllDigitsOfTheDouble) {
  EXPECT_EQ(Text({{Day("2024-03-02"), 0.1F}}),
            R"([{"Key":"2024-03-02","Value":0.10000000149011612}])");
}

TEST(SaveLedger, IsReadBackByLoadLedger) {
  const PowerLedger ledger{{Day("2024-03-01"), 0.1F}, {Day("2024-03-02"), 6.0F / 0.88F}};
  EXPECT_EQ(Loaded(Text(ledger)), EntriesOf(ledger));
}

TEST(LoadLedger, SortsAFileInAnyOrder) {
  EXPECT_EQ(Loaded(R"([{"Key":"2024-03-09","Value":1},{"Key":"2024-03-01","Value":2},)"
                   R"({"Key":"2024-03-09","Value":3},{"Key":"2024-03-05","Value":4},)"
                   R"({"Key":"2024-03-01","Value":5}])"),
            (Entries{{"2024-03-01", 5.0F}, {"2024-03-05", 4.0F}, {"2024-03-09", 3.0F}}));
}

TEST(LoadLedger, LeavesTheMapUnchangedForAMissingFile) {
  PowerLedger ledger{{Day("2024-03-05"), 5.0F}};
  LoadLedger(ScratchFolder().File("ledger.json").wstring(), Day(kOldest), ledger);
  EXPECT_EQ(EntriesOf(ledger), (Entries{{"2024-03-05", 5.0F}}));
}

TEST(SaveLedger, IsFalseForAMissingFolder) {
  EXPECT_FALSE(SaveLedger((ScratchFolder().File("missing") / "ledger.json").wstring(), {}));
}

TEST(HoldsLedger, IsTrueForAnArrayOfAsManyElements) {
  const ScratchFolder folder;
  const auto file = folder.File("ledger.json");
  const PowerLedger ledger{{Day("2024-03-01"), 1.0F}, {Day("2024-03-02"), 2.0F}};
  EXPECT_FALSE(HoldsLedger(file.wstring(), {}));
  WriteBytes(file, Text(ledger));
  EXPECT_TRUE(HoldsLedger(file.wstring(), ledger));
  EXPECT_FALSE(HoldsLedger(file.wstring(), {}));
  for (const char* other : {"", "[", "[1]", "[1,2,3]", R"([{"Key":"2024-03-01","Value":1},{"Key":)",
                            R"({"Key":1,"Value":2})"}) {
    WriteBytes(file, other);
    EXPECT_FALSE(HoldsLedger(file.wstring(), ledger)) << other;
  }
  WriteBytes(file, "[]");
  EXPECT_TRUE(HoldsLedger(file.wstring(), {}));
}
