#include "reports/ranking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/byte_text.h"
#include "reports/fake_ranking.h"

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kExecutable[] = "\\Device\\HarddiskVolume3\\Tools\\a.exe";

std::wstring Widened(const std::string& bytes) {
  return WidenBytes(bytes.data(), bytes.data() + bytes.size());
}

/// So many packaged applications, "App 10" with an energy of 10 and so on.
std::vector<std::string> RowsOfApps(int first, int count) {
  std::vector<std::string> rows;
  for (int i = first; i < first + count; ++i) {
    rows.push_back(StoreRow("Alder", "App " + std::to_string(i), std::to_string(i)));
  }
  return rows;
}

}  // namespace

TEST(Ranking, IsEmptyForAnEmptyStore) { EXPECT_THAT(FakeRanking().Rank({}), IsEmpty()); }

TEST(Ranking, HoldsTwentyApplications) {
  const Ranking ranking = FakeRanking().Rank(RowsOfApps(10, 20));
  ASSERT_EQ(ranking.size(), 20U);
  EXPECT_EQ(ranking.front().Name, "App 29");
  EXPECT_EQ(ranking.back().Name, "App 10");
}

TEST(Ranking, LosesTheSmallestOfTwentyOne) {
  const Ranking ranking = FakeRanking().Rank(RowsOfApps(10, 21));
  ASSERT_EQ(ranking.size(), 20U);
  EXPECT_EQ(ranking.front().Name, "App 30");
  EXPECT_EQ(ranking.back().Name, "App 11");
}

TEST(Ranking, FallsByValue) {
  const Ranking ranking = FakeRanking().Rank(
      {StoreRow("a", "Small", "1"), StoreRow("b", "Large", "5"), StoreRow("c", "Middle", "2")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Large", "Middle", "Small"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(62.5F, 25.0F, 12.5F));
}

TEST(Ranking, CountsARowAtTheCutoffInBothPasses) {
  const Ranking ranking = FakeRanking().Rank({StoreRow("a", "At", "1", "2026-11-13:10:30:15"),
                                              StoreRow("b", "Before", "1", "2026-11-13:10:30:14"),
                                              StoreRow("c", "After", "3", "2026-11-14:10:30:15")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("After", "At"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(75.0F, 25.0F));
}

TEST(Ranking, OfNoDaysHoldsNoRowOfThePast) {
  const ReportingPeriod none(TimeOf("2026-11-14:10:30:15"), 0);
  EXPECT_THAT(FakeRanking().Rank({StoreRow("a", "A", "1", "2026-11-14:10:30:14")}, none),
              IsEmpty());
}

TEST(Ranking, LetsARowWithoutADisplayNameLowerEveryShare) {
  const Ranking ranking = FakeRanking().Rank({StoreRow("a", "A", "1"), StoreRow("b", "", "3")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("A"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(25.0F));
}

TEST(Ranking, ShowsAnExecutableOnlyUnderTheNameOfAnInstalledProgram) {
  FakeRanking fake;
  fake.desktopApps = {{L"Meadow", L""}};
  const std::vector<std::string> rows{
      StoreRow(kExecutable, "Meadow", "1"), StoreRow(kExecutable, "meadow", "1"),
      StoreRow(kExecutable, "Meadow ", "1"), StoreRow(kExecutable, "Mead", "1")};
  const Ranking ranking = fake.Rank(rows);
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Meadow"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(25.0F)) << "the others stay in the total";
  EXPECT_EQ(fake.icons.exports.size(), 1U) << "and get no icon";
}

TEST(Ranking, ShowsAPackagedApplicationUnderAnyName) {
  const Ranking ranking = FakeRanking().Rank({StoreRow("Alder.App", "Nobody Knows", "1"),
                                              StoreRow("", "No Identity", "1"),
                                              StoreRow("\\Device", "No Device Folder", "2")});
  EXPECT_THAT(NamesOf(ranking),
              testing::UnorderedElementsAre("No Device Folder", "No Identity", "Nobody Knows"));
}

TEST(Ranking, LooksAnExecutableUpByItsBytesUndecoded) {
  FakeRanking decoded;
  decoded.desktopApps = {{L"caf\x00E9", L""}};
  EXPECT_THAT(decoded.Rank({StoreRow(kExecutable, "caf\xC3\xA9", "1")}), IsEmpty());

  FakeRanking widened;
  widened.desktopApps = {{Widened("caf\xE9"), L""}};
  EXPECT_THAT(NamesOf(widened.Rank({StoreRow(kExecutable, "caf\xE9", "1")})),
              ElementsAre("caf\xE9"));
}

TEST(Ranking, MergesTheIdentitiesOfOneDisplayName) {
  FakeRanking fake;
  fake.desktopApps = {{L"Meadow", L""}};
  fake.packagedApps = {{"Alder", {"", "logo"}}};
  fake.icons.exported = "exported.png";
  const Ranking ranking =
      fake.Rank({StoreRow("Birch", "Meadow", "1"), StoreRow(kExecutable, "Meadow", "2"),
                 StoreRow("Alder", "Meadow", "3"), StoreRow("Alder", "Other", "2")});
  ASSERT_EQ(ranking.size(), 2U);
  EXPECT_EQ(ranking[0].Name, "Meadow");
  EXPECT_EQ(ranking[0].Value, 75.0F);
  EXPECT_EQ(ranking[0].Icon, "exported.png") << "the first that was not empty";
  EXPECT_THAT(fake.icons.copies, ElementsAre("logo|C:\\Icons\\Other.png"));
}

TEST(Ranking, MakesIconsForApplicationsThatAreCutOffToo) {
  FakeRanking fake;
  fake.packagedApps = {{"Alder", {}}};
  EXPECT_EQ(fake.Rank(RowsOfApps(10, 25)).size(), 20U);
  EXPECT_EQ(fake.icons.copies.size(), 25U);
}

TEST(Ranking, MakesNoIconForARowOutsideThePeriod) {
  FakeRanking fake;
  fake.packagedApps = {{"Alder", {}}};
  EXPECT_THAT(fake.Rank({StoreRow("Alder", "A", "1", "2026-11-01:00:00:00")}), IsEmpty());
  EXPECT_THAT(fake.icons.copies, IsEmpty());
}

TEST(Ranking, TakesItsStepsIn32BitFloat) {
  // 54979474 reads 54979472 in 32 bits, times 100 is 5497947136, a multiple of 512, and the total
  // of 89395689 reads 89395688. In double precision, multiplied as a whole number or divided first,
  // the last digits are others.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "A", "54979474"), StoreRow("b", "B", "34416215")});
  ASSERT_EQ(ranking.size(), 2U);
  EXPECT_EQ(ranking[0].Value, 61.50125503540039F);
}

TEST(Ranking, TakesA64BitEnergyToFloatInOneStep) {
  // 2^60 + 2^36 + 1 is nearer to 2^60 + 2^37 than to 2^60. By way of a double, which drops the last
  // bit, it lies half-way and would end at 2^60. Its low 32 bits are 1, so the total is 4. The
  // float next to (2^60 + 2^37) * 100 is 838860928 * 2^37.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "A", "1152921573326323713"), StoreRow("b", "", "3")});
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(838860928.0F * 34359738368.0F));
}

TEST(Ranking, TakesTheTotalToFloatOnceItIsSummed) {
  // 2^24 + 1 + 1 is a float, 2^24 + 1 is none: added up in 32-bit float the total would stay at
  // 2^24, and the first share would be 100.
  const Ranking ranking = FakeRanking().Rank(
      {StoreRow("a", "A", "16777216"), StoreRow("b", "", "1"), StoreRow("b", "", "1")});
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(1677721600.0F / 16777218.0F));
  EXPECT_LT(ValuesOf(ranking)[0], 100.0F);
}

TEST(Ranking, AddsSharesIn32BitFloat) {
  const std::vector<std::string> rows(11, StoreRow("a", "A", "1"));
  EXPECT_THAT(ValuesOf(FakeRanking().Rank(rows)), ElementsAre(100.00000762939453F));
}

TEST(Ranking, TotalReads32BitsAndSharesRead64) {
  // 2^32 + 100 counts as 100 in the total, and as 4294967296 (in 32-bit float) in its share.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "Wide", "4294967396"), StoreRow("b", "Plain", "100")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Wide", "Plain"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(2147483648.0F, 50.0F));
}

TEST(Ranking, TotalReadsTheSignOfThe32Bits) {
  // 4294967295 counts as -1 in the total: 100 * 3 / 2.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "A", "3"), StoreRow("b", "", "4294967295")});
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(150.0F));
}

TEST(Ranking, TotalIsSummedIn64Bits) {
  // Three times 2^31 - 1: a sum in 32 bits would wrap.
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "A", "2147483647"), StoreRow("b", "B", "2147483647"),
                          StoreRow("c", "C", "2147483647")});
  EXPECT_THAT(ValuesOf(ranking),
              ElementsAre(33.33333206176758F, 33.33333206176758F, 33.33333206176758F));
}

TEST(Ranking, TakesEveryKindOfNumber) {
  // 1.9 is cut to 1, 1e30 is beyond 64 bits and 0; 2^64 - 1 is -1 in both passes.
  const Ranking ranking = FakeRanking().Rank(
      {StoreRow("a", "Cut", "1.9"), StoreRow("b", "Beyond", "1e30"),
       StoreRow("c", "Wrapped", "18446744073709551615"), StoreRow("d", "Plain", "4")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Plain", "Cut", "Beyond", "Wrapped"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(100.0F, 25.0F, 0.0F, -25.0F));
}

TEST(Ranking, SkipsRowsWithoutAMember) {
  const std::vector<std::string> rows{
      StoreRow("a", "A", "2"),
      R"({"DisplayName":"No Name","TimeStamp":"2026-11-14:09:00:00","TotalEnergy":1})",
      R"({"Name":"a","TimeStamp":"2026-11-14:09:00:00","TotalEnergy":1})",
      R"({"Name":"a","DisplayName":"No Time","TotalEnergy":100})",
      R"({"Name":"a","DisplayName":"No Energy","TimeStamp":"2026-11-14:09:00:00"})",
      "{}"};
  const Ranking ranking = FakeRanking().Rank(rows);
  EXPECT_THAT(NamesOf(ranking), ElementsAre("A"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(50.0F)) << "rows without a name are in the total";
}

TEST(Ranking, TakesAMemberOfAnotherTypeForMissing) {
  const std::vector<std::string> rows{
      StoreRow("a", "A", "2"),
      R"({"Name":1,"DisplayName":"x","TimeStamp":"2026-11-14:09:00:00","TotalEnergy":1})",
      R"({"Name":"a","DisplayName":null,"TimeStamp":"2026-11-14:09:00:00","TotalEnergy":1})",
      R"({"Name":"a","DisplayName":"x","TimeStamp":["2026-11-14:09:00:00"],"TotalEnergy":100})",
      StoreRow("a", "x", R"("100")"),
      StoreRow("a", "x", "true"),
      StoreRow("a", "x", "{}")};
  const Ranking ranking = FakeRanking().Rank(rows);
  EXPECT_THAT(NamesOf(ranking), ElementsAre("A"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(50.0F));
}

TEST(Ranking, StepsOverElementsThatAreNoObjects) {
  const Ranking ranking = FakeRanking().Rank(
      {"null", "7", R"("TotalEnergy")", "[]", "[[]]", "true", StoreRow("a", "A", "1")});
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(100.0F));
}

TEST(Ranking, TakesTheFirstOfMembersOfOneName) {
  const std::string row =
      R"({"Name":"a","Name":2,"DisplayName":"First","DisplayName":"Second",)"
      R"("TimeStamp":"2026-11-14:09:00:00","TimeStamp":"","TotalEnergy":1,"TotalEnergy":9})";
  const Ranking ranking = FakeRanking().Rank({row, StoreRow("b", "B", "3")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("B", "First"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(75.0F, 25.0F));
}

TEST(Ranking, NeverCountsATimeThatDoesNotParse) {
  for (const int days : {1, 1'000'000}) {
    const ReportingPeriod period(TimeOf("2026-11-14:10:30:15"), days);
    const Ranking ranking = FakeRanking().Rank(
        {StoreRow("a", "A", "1"), StoreRow("b", "B", "1", ""), StoreRow("c", "C", "1", "yesterday"),
         StoreRow("d", "D", "1", "1900-01-01:00:00:00")},
        period);
    EXPECT_THAT(ValuesOf(ranking), ElementsAre(100.0F)) << days;
  }
}

TEST(Ranking, TakesATimeThatParsesInPartAsFarAsItWent) {
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "Midnight", "1", "2026-11-14"),
                          StoreRow("b", "Nine", "3", "2026-11-14:09:00:00 and more")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Nine", "Midnight"));
}

TEST(Ranking, KeepsZerosInsideNames) {
  const Ranking ranking = FakeRanking().Rank(
      {StoreRow("a", "A"s, "1"), StoreRow("a", "A\0B"s, "2"), StoreRow("a", "\0"s, "3")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("\0"s, "A\0B"s, "A"s));
}

TEST(Ranking, TakesAMemberWhoseNameGoesOnAfterAZeroForAnother) {
  const std::string row =
      R"({"Name":"a","DisplayName\u0000":"Zero","DisplayName":"A",)"
      R"("TimeStamp":"2026-11-14:09:00:00","TotalEnergy\u0000":9,"TotalEnergy":1})";
  const Ranking ranking = FakeRanking().Rank({row, StoreRow("b", "B", "3")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("B", "A"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(75.0F, 25.0F));
}

TEST(Ranking, LooksAnExecutableUpByAllBytesOfItsName) {
  FakeRanking fake;
  fake.desktopApps = {{L"Meadow", L""}};
  EXPECT_THAT(NamesOf(fake.Rank({StoreRow(kExecutable, "Meadow", "1"),
                                 StoreRow(kExecutable, "Meadow\0x"s, "1")})),
              ElementsAre("Meadow"));
}

TEST(Ranking, OfNoEnergyHasNoFiniteValue) {
  const Ranking nothing = FakeRanking().Rank({StoreRow("a", "A", "0")});
  ASSERT_EQ(nothing.size(), 1U);
  EXPECT_TRUE(std::isnan(nothing[0].Value));

  const Ranking cancelled = FakeRanking().Rank(
      {StoreRow("z", "Zero", "0"), StoreRow("n", "Negative", "-5"), StoreRow("p", "Positive", "5"),
       StoreRow("b", "Both", "5"), StoreRow("b", "Both", "-5")});
  ASSERT_EQ(cancelled.size(), 4U);
  EXPECT_EQ(cancelled[0].Name, "Positive");
  EXPECT_TRUE(std::isinf(cancelled[0].Value));
  EXPECT_EQ(cancelled[1].Name, "Negative");
  EXPECT_TRUE(std::isnan(cancelled[2].Value));
  EXPECT_TRUE(std::isnan(cancelled[3].Value));
}

TEST(Ranking, IsASumOfNegativeEnergiesToo) {
  const Ranking ranking = FakeRanking().Rank({StoreRow("a", "A", "-3"), StoreRow("b", "B", "-1")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("A", "B"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(75.0F, 25.0F));
}

TEST(Ranking, OfTwoHundredThousandRowsMakesEachIconOnce) {
  FakeRanking fake;
  for (int i = 0; i < 200; ++i) fake.packagedApps["Grove." + std::to_string(i)] = {"", "logo"};
  fake.packagedApps["Alder"] = {"", "logo"};
  std::vector<std::string> rows;
  for (int i = 0; i < 200'000; ++i) {
    rows.push_back(StoreRow("Alder", "App " + std::to_string(i % 40), "1"));
  }
  EXPECT_EQ(fake.Rank(rows).size(), 20U);
  EXPECT_EQ(fake.icons.copies.size(), 40U);
}
