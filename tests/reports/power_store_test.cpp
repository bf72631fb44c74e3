#include "reports/power_store.h"

#include <gtest/gtest.h>
#include <string>

#include "base/scratch_folder.h"
#include "reports/log_rows.h"
#include "reports/report_times.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

/// The period up to 2026-11-14 10:30:15.
ReportingPeriod Month() { return {At("2026-11-14:10:30:15"), 30}; }

/// A log that stores are merged into.
class PowerStoreTest : public testing::Test {
 protected:
  void Merge(const std::string& json, const ReportingPeriod& period = Month()) {
    const ScratchFolder folder;
    WriteBytes(folder.File("store.json"), json);
    const auto store = TryReadPowerStore(folder.File("store.json").wstring(), period);
    isRead = store.has_value();
    if (isRead) MergePowerStore(*store, log);
  }

  /// The text of the store that is written for a log.
  static std::string TextOf(const PowerLog& log) {
    const ScratchFolder folder;
    EXPECT_TRUE(WritePowerStore(folder.File("store.json").wstring(), log));
    return ReadBytes(folder.File("store.json"));
  }

  std::string Text() const { return TextOf(log); }

  bool isRead = false;
  PowerLog log;
};

using MergePowerStoreTest = PowerStoreTest;
using WritePowerStoreTest = PowerStoreTest;

/// A row of the store as JSON text.
std::string Row(const std::string& name, const std::string& displayName, const std::string& time,
                const std::string& energy) {
  return R"({"Name":")" + name + R"(","DisplayName":")" + displayName + R"(","TimeStamp":")" +
         time + R"(","TotalEnergy":)" + energy + "}";
}

std::string RowOf(const std::string& name) { return Row(name, "A", "2026-11-01:02:00:00", "7"); }

std::string RowAt(const std::string& time) { return Row("a", "A", time, "7"); }

}  // namespace

TEST_F(WritePowerStoreTest, IsAnEmptyArrayWithoutRows) {
  EXPECT_EQ(Text(), "[]");
  Merge("[]");
  EXPECT_EQ(Text(), "[]");
}

TEST_F(WritePowerStoreTest, HasFourMembersPerRowInOrder) {
  log.Append({"\\Device\\C\\a.exe", "Meadow \"Office\"", TimeAt("2026-11-14:02:10:46"), 17});
  log.Append({"b", "", TimeAt("2026-11-14:00:00:00"), -1});
  EXPECT_EQ(Text(),
            R"([{"Name":"\\Device\\C\\a.exe","DisplayName":"Meadow \"Office\"",)"
            R"("TimeStamp":"2026-11-14:02:10:46","TotalEnergy":17},)"
            R"({"Name":"b","DisplayName":"","TimeStamp":"2026-11-14:00:00:00","TotalEnergy":-1}])");
}

TEST_F(WritePowerStoreTest, WritesEachFieldOfATime) {
  for (const char* time : {"1971-01-01:00:00:00", "2026-12-31:23:59:59", "2037-09-08:07:06:05"}) {
    PowerLog one;
    one.Append({"a", "", TimeAt(time), 1});
    EXPECT_EQ(TextOf(one), "[" + Row("a", "", time, "1") + "]");
  }
}

TEST_F(WritePowerStoreTest, HoldsEnergyIn64Bits) {
  log.Append({"a", "", TimeAt("2026-11-14:02:00:00"), 9223372036854775807});
  log.Append({"b", "", TimeAt("2026-11-14:02:00:00"), -9223372036854775807 - 1});
  EXPECT_NE(Text().find(R"("TotalEnergy":9223372036854775807})"), std::string::npos);
  EXPECT_NE(Text().find(R"("TotalEnergy":-9223372036854775808})"), std::string::npos);
}

TEST_F(WritePowerStoreTest, KeepsTheBytesOfNames) {
  const std::string name =
      "Stra\xC3\x9F"
      "e \xFF\x80/";
  log.Append({name, name, TimeAt("2026-11-14:02:00:00"), 1});
  EXPECT_EQ(Text().substr(0, 10 + name.size() + 2), R"([{"Name":")" + name + "\",");
}

// More names than the writer remembers as JSON text.
TEST_F(WritePowerStoreTest, WritesEachOfManyNamesInItsRow) {
  std::string expected = "[";
  for (int i = 0; i < 20'000; ++i) {
    const std::string name = "\\Device\\" + std::to_string(i);
    const std::string displayName = "\"" + std::to_string(i % 6000) + "\"";
    log.Append({name, displayName, TimeAt("2026-11-14:02:10:46"), i});
    expected += (i == 0 ? "" : ",") + Row(R"(\\Device\\)" + std::to_string(i),
                                          R"(\")" + std::to_string(i % 6000) + R"(\")",
                                          "2026-11-14:02:10:46", std::to_string(i));
  }
  EXPECT_TRUE(Text() == expected + "]");
}

TEST_F(MergePowerStoreTest, AppendsTheStoredRowsInOrder) {
  log.Append({"new", "", TimeAt("2026-11-14:02:00:00"), 1});
  const std::string old = RowOf("z") + "," + RowOf("a") + "," + RowOf("m");
  Merge("[" + old + "]");
  EXPECT_EQ(Text(), "[" + Row("new", "", "2026-11-14:02:00:00", "1") + "," + old + "]");
}

TEST_F(MergePowerStoreTest, KeepsTheNewRowOfAnIdentity) {
  log.Append({"a", "new", TimeAt("2026-11-01:02:00:00"), 1});
  Merge("[" + Row("a", "old", "2026-11-01:02:00:00", "100") + "," +
        Row("a", "old", "2026-11-01:03:00:00", "200") + "]");
  EXPECT_EQ(Text(), "[" + Row("a", "new", "2026-11-01:02:00:00", "1") + "," +
                        Row("a", "old", "2026-11-01:03:00:00", "200") + "]");
}

TEST_F(MergePowerStoreTest, KeepsTheFirstOfTwoStoredRowsOfAnIdentity) {
  Merge("[" + Row("a", "first", "2026-11-01:02:00:00", "1") + "," +
        Row("a", "second", "2026-11-01:02:00:00", "2") + "]");
  EXPECT_EQ(Text(), "[" + Row("a", "first", "2026-11-01:02:00:00", "1") + "]");
}

TEST_F(MergePowerStoreTest, KeepsARowAtTheCutoffAndDropsOlderOnes) {
  Merge("[" + RowAt("2026-10-15:10:30:14") + "," + RowAt("2026-10-15:10:30:15") + "]");
  EXPECT_EQ(Text(), "[" + RowAt("2026-10-15:10:30:15") + "]");
}

TEST_F(MergePowerStoreTest, DropsARowWithAMalformedTime) {
  Merge("[" + RowAt("") + "," + RowAt("yesterday") + "," + RowAt("01.11.2026") + "]");
  EXPECT_EQ(Text(), "[]");
}

TEST_F(MergePowerStoreTest, DropsARowWithAMalformedTimeEvenWithoutACutoff) {
  // Thirty days before this clock is outside the calendar, so there is no cutoff.
  Merge("[" + RowAt("yesterday") + "," + RowAt("1971-01-01:00:00:00") + "]",
        ReportingPeriod(At("1970-01-02:00:00:00"), 30));
  EXPECT_EQ(Text(), "[" + RowAt("1971-01-01:00:00:00") + "]");
}

TEST_F(MergePowerStoreTest, ReadsTheLow32BitsOfEnergy) {
  Merge("[" + Row("a", "", "2026-11-01:02:00:00", "4294967301") + "," +
        Row("b", "", "2026-11-01:02:00:00", "2147483648") + "," +
        Row("c", "", "2026-11-01:02:00:00", "6442450941") + "," +
        Row("d", "", "2026-11-01:02:00:00", "-4294967297") + "]");
  EXPECT_EQ(Text(), "[" + Row("a", "", "2026-11-01:02:00:00", "5") + "," +
                        Row("b", "", "2026-11-01:02:00:00", "-2147483648") + "," +
                        Row("c", "", "2026-11-01:02:00:00", "2147483645") + "," +
                        Row("d", "", "2026-11-01:02:00:00", "-1") + "]");
}

TEST_F(MergePowerStoreTest, ReadsNumbersThatAreNot32BitIntegers) {
  int second = 10;
  for (const auto& [written, kept] :
       {std::pair("18446744073709551615", "-1"), std::pair("9223372036854775807", "-1"),
        std::pair("1e300", "0"), std::pair("-1e300", "0"), std::pair("2.9", "2"),
        std::pair("-2.9", "-2")}) {
    const std::size_t before = log.Size();
    Merge("[" + Row("a", "A", "2026-11-01:02:00:" + std::to_string(second++), written) + "]");
    ASSERT_EQ(log.Size(), before + 1) << written;
    EXPECT_EQ(std::to_string(RowsOf(log).back().TotalEnergy), kept) << written;
  }
}

TEST_F(MergePowerStoreTest, DropsARowThatLacksAMember) {
  Merge(R"([{"DisplayName":"A","TimeStamp":"2026-11-01:02:00:00","TotalEnergy":7},)"
        R"({"Name":"a","TimeStamp":"2026-11-01:02:00:00","TotalEnergy":7},)"
        R"({"Name":"a","DisplayName":"A","TotalEnergy":7},)"
        R"({"Name":"a","DisplayName":"A","TimeStamp":"2026-11-01:02:00:00"},{}])");
  EXPECT_EQ(Text(), "[]");
}

TEST_F(MergePowerStoreTest, TreatsAMemberOfAnotherTypeAsMissing) {
  Merge(R"([{"Name":1,"DisplayName":"A","TimeStamp":"2026-11-01:02:00:00","TotalEnergy":7},)"
        R"({"Name":"a","DisplayName":null,"TimeStamp":"2026-11-01:02:00:00","TotalEnergy":7},)"
        R"({"Name":"a","DisplayName":"A","TimeStamp":20261101,"TotalEnergy":7},)"
        R"({"Name":"a","DisplayName":"A","TimeStamp":[],"TotalEnergy":7},)"
        R"({"Name":"a","DisplayName":"A","TimeStamp":"2026-11-01:02:00:00","TotalEnergy":"7"},)"
        R"({"Name":"a","DisplayName":"A","TimeStamp":"2026-11-01:02:00:00","TotalEnergy":true}])");
  EXPECT_EQ(Text(), "[]");
}

TEST_F(MergePowerStoreTest, SkipsElementsThatAreNotObjects) {
  Merge("[null,1,\"text\",[],[[]],true," + RowOf("a") + ",-0.5]");
  EXPECT_EQ(Text(), "[" + RowOf("a") + "]");
}

TEST_F(MergePowerStoreTest, AddsNoRowsFromADocumentThatIsNotAnArray) {
  for (const char* json : {"{}", "null", "1", "\"text\"", "true"}) {
    Merge(json);
    EXPECT_FALSE(isRead) << json;
  }
  Merge(R"({"a":)" + RowOf("a") + "}");
  Merge(RowOf("a"));
  EXPECT_EQ(Text(), "[]");
}

TEST_F(MergePowerStoreTest, DropsUnknownMembersAndUsesTheFirstOfTwoEqualOnes) {
  Merge(R"([{"Extra":{"a":[1]},"TotalEnergy":7,"Name":"a","Name":"b",)"
        R"("TimeStamp":"2026-11-01:02:00:00","DisplayName":"A"}])");
  EXPECT_EQ(Text(), "[" + RowOf("a") + "]");
}

TEST_F(MergePowerStoreTest, KeepsZerosInNames) {
  const std::string rows = Row("a\\u0000b", "A\\u0000B", "2026-11-01:02:00:00", "1") + "," +
                           Row("a\\u0000c", "", "2026-11-01:02:00:00", "2") + "," +
                           Row("a", "", "2026-11-01:02:00:00", "3");
  Merge("[" + rows + "]");
  EXPECT_EQ(RowsOf(log).front().Name, std::string("a\0b", 3));
  EXPECT_EQ(RowsOf(log).front().DisplayName, std::string("A\0B", 3));
  EXPECT_EQ(Text(), "[" + rows + "]");
}

// The short name comes first: a comparison that stops at a zero would treat the others as equal.
TEST_F(MergePowerStoreTest, DistinguishesNamesThatDifferAfterAZero) {
  const std::string rows = Row("a", "A", "2026-11-01:02:00:00", "1") + "," +
                           Row("a\\u0000", "A", "2026-11-01:02:00:00", "2") + "," +
                           Row("a\\u0000b", "A\\u0000B", "2026-11-01:02:00:00", "3");
  Merge("[" + rows + "]");
  EXPECT_EQ(Text(), "[" + rows + "]");
}

TEST_F(MergePowerStoreTest, ReplacesOnlyTheStoredRowWithTheSameBytes) {
  log.Append({"a", "new", TimeAt("2026-11-01:02:00:00"), 1});
  Merge("[" + Row("a", "old", "2026-11-01:02:00:00", "2") + "," +
        Row("a\\u0000b", "old", "2026-11-01:02:00:00", "3") + "]");
  EXPECT_EQ(Text(), "[" + Row("a", "new", "2026-11-01:02:00:00", "1") + "," +
                        Row("a\\u0000b", "old", "2026-11-01:02:00:00", "3") + "]");
}

TEST_F(MergePowerStoreTest, DistinguishesMembersThatDifferAfterAZero) {
  Merge(
      R"([{"Name\u0000":"x","Name":"a","DisplayName\u0000x":"x","DisplayName":"A",)"
      R"("TotalEnergy\u0000":1,"TimeStamp":"2026-11-01:02:00:00","TotalEnergy":7},)"
      R"({"Name\u0000":"a","DisplayName":"A","TimeStamp":"2026-11-01:02:00:00","TotalEnergy":7}])");
  EXPECT_EQ(Text(), "[" + RowOf("a") + "]");
}

TEST_F(MergePowerStoreTest, AcceptsEmptyNames) {
  const std::string row = Row("", "", "2026-11-01:02:00:00", "1");
  Merge("[" + row + "]");
  EXPECT_EQ(Text(), "[" + row + "]");
}

TEST_F(MergePowerStoreTest, WritesATimeInFull) {
  Merge("[" + RowAt("2026-11-1:2:0:5 and more") + "]");
  EXPECT_EQ(Text(), "[" + RowAt("2026-11-01:02:00:05") + "]");
}
