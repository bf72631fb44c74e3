#include "reports/ranking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
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
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

std::wstring Widened(const std::string& bytes) {
  return WidenBytes(bytes.data(), bytes.data() + bytes.size());
}

/// `count` packaged applications: "App 10" with an energy of 10, "App 11" with 11 and so on.
std::vector<std::string> RowsOfApps(int first, int count) {
  std::vector<std::string> rows;
  for (int i = first; i < first + count; ++i) {
    rows.push_back(StoreRow("Alder", "App " + std::to_string(i), std::to_string(i)));
  }
  return rows;
}

}  // namespace

TEST(RankApplications, IsEmptyForAnEmptyStore) { EXPECT_THAT(FakeRanking().Rank({}), IsEmpty()); }

TEST(RankApplications, ReturnsTwentyApplications) {
  const Ranking ranking = FakeRanking().Rank(RowsOfApps(10, 20));
  ASSERT_EQ(ranking.size(), 20U);
  EXPECT_EQ(ranking.front().Name, "App 29");
  EXPECT_EQ(ranking.back().Name, "App 10");
}

TEST(RankApplications, DropsTheSmallestOfTwentyOne) {
  const Ranking ranking = FakeRanking().Rank(RowsOfApps(10, 21));
  ASSERT_EQ(ranking.size(), 20U);
  EXPECT_EQ(ranking.front().Name, "App 30");
  EXPECT_EQ(ranking.back().Name, "App 11");
}

TEST(RankApplications, SortsByDescendingValue) {
  const Ranking ranking = FakeRanking().Rank(
      {StoreRow("a", "Small", "1"), StoreRow("b", "Large", "5"), StoreRow("c", "Middle", "2")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Large", "Middle", "Small"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(62.5F, 25.0F, 12.5F));
}

TEST(RankApplications, CountsARowAtTheCutoffInTotalAndShare) {
  const Ranking ranking = FakeRanking().Rank({StoreRow("a", "At", "1", "2026-11-13:10:30:15"),
                                              StoreRow("b", "Before", "1", "2026-11-13:10:30:14"),
                                              StoreRow("c", "After", "3", "2026-11-14:10:30:15")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("After", "At"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(75.0F, 25.0F));
}

TEST(RankApplications, IgnoresPastRowsForZeroDays) {
  const ReportingPeriod none(At("2026-11-14:10:30:15"), 0);
  EXPECT_THAT(FakeRanking().Rank({StoreRow("a", "A", "1", "2026-11-14:10:30:14")}, none),
              IsEmpty());
}

TEST(RankApplications, CountsARowWithoutADisplayNameInTheTotal) {
  const Ranking ranking = FakeRanking().Rank({StoreRow("a", "A", "1"), StoreRow("b", "", "3")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("A"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(25.0F));
}

TEST(RankApplications, IncludesAnExecutableOnlyUnderTheNameOfAnInstalledProgram) {
  FakeRanking fake;
  fake.desktopApps = {{L"Meadow", L""}};
  const std::vector<std::string> rows{
      StoreRow(kExecutable, "Meadow", "1"), StoreRow(kExecutable, "meadow", "1"),
      StoreRow(kExecutable, "Meadow ", "1"), StoreRow(kExecutable, "Mead", "1")};
  const Ranking ranking = fake.Rank(rows);
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Meadow"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(25.0F)) << "the others count in the total";
  EXPECT_EQ(fake.icons.exports.size(), 1U) << "the others have no icon";
}

TEST(RankApplications, IncludesAPackagedApplicationUnderAnyName) {
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("Alder.App", "Any Name", "1"), StoreRow("", "No Identity", "1"),
                          StoreRow("\\Device", "No Device Folder", "2")});
  EXPECT_THAT(NamesOf(ranking),
              testing::UnorderedElementsAre("No Device Folder", "No Identity", "Any Name"));
}

TEST(RankApplications, LooksAnExecutableUpByItsUndecodedBytes) {
  FakeRanking decoded;
  decoded.desktopApps = {{L"caf\x00E9", L""}};
  EXPECT_THAT(decoded.Rank({StoreRow(kExecutable, "caf\xC3\xA9", "1")}), IsEmpty());

  FakeRanking widened;
  widened.desktopApps = {{Widened("caf\xE9"), L""}};
  EXPECT_THAT(NamesOf(widened.Rank({StoreRow(kExecutable, "caf\xE9", "1")})),
              ElementsAre("caf\xE9"));
}

TEST(RankApplications, MergesTheIdentitiesOfOneDisplayName) {
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
  EXPECT_EQ(ranking[0].Icon, "exported.png") << "not the first icon that is not empty";
  EXPECT_THAT(fake.icons.copies, ElementsAre("logo|C:\\Icons\\Other.png"));
}

TEST(RankApplications, MakesIconsForApplicationsBelowTheFirstTwenty) {
  FakeRanking fake;
  fake.packagedApps = {{"Alder", {}}};
  EXPECT_EQ(fake.Rank(RowsOfApps(10, 25)).size(), 20U);
  EXPECT_EQ(fake.icons.copies.size(), 25U);
}

TEST(RankApplications, MakesAnIconOncePerDisplayName) {
  FakeRanking fake;
  fake.desktopApps = {{L"Meadow", L""}};
  fake.packagedApps = {{"Alder", {}}, {"Birch", {}}};
  const Ranking ranking =
      fake.Rank({StoreRow("Alder", "Meadow", "1"), StoreRow("Birch", "Meadow", "1"),
                 StoreRow(kExecutable, "Meadow", "1"), StoreRow("Birch", "Other", "1")});
  EXPECT_THAT(fake.icons.copies, ElementsAre("|C:\\Icons\\Meadow.png", "|C:\\Icons\\Other.png"));
  EXPECT_THAT(fake.icons.exports, IsEmpty());
  ASSERT_EQ(ranking.size(), 2U);
  EXPECT_EQ(ranking[0].Icon, "C:\\Icons\\Meadow.png");
}

TEST(RankApplications, RetriesAfterAnEmptyIcon) {
  FakeRanking fake;
  fake.packagedApps = {{"Alder", {"", "first"}}, {"Birch", {"", "second"}}};
  fake.icons.onlyLogo = "second";
  const Ranking ranking =
      fake.Rank({StoreRow("Alder", "Meadow", "1"), StoreRow("Alder", "Meadow", "1"),
                 StoreRow("Birch", "Meadow", "1"), StoreRow("Alder", "Meadow", "1")});
  EXPECT_THAT(fake.icons.copies,
              ElementsAre("first|C:\\Icons\\Meadow.png", "first|C:\\Icons\\Meadow.png",
                          "second|C:\\Icons\\Meadow.png"));
  ASSERT_EQ(ranking.size(), 1U);
  EXPECT_EQ(ranking[0].Icon, "C:\\Icons\\Meadow.png");
}

TEST(RankApplications, MakesNoIconForARowOutsideThePeriod) {
  FakeRanking fake;
  fake.packagedApps = {{"Alder", {}}};
  EXPECT_THAT(fake.Rank({StoreRow("Alder", "A", "1", "2026-11-01:00:00:00")}), IsEmpty());
  EXPECT_THAT(fake.icons.copies, IsEmpty());
}

TEST(RankApplications, LooksAnExecutableUpByAllBytesOfItsName) {
  FakeRanking fake;
  fake.desktopApps = {{L"Meadow", L""}};
  EXPECT_THAT(NamesOf(fake.Rank({StoreRow(kExecutable, "Meadow", "1"),
                                 StoreRow(kExecutable, "Meadow\0x"s, "1")})),
              ElementsAre("Meadow"));
}

TEST(RankApplications, MakesEachIconOnceForTwoHundredThousandRows) {
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

TEST(KeepLargest, SortsByDescendingValue) {
  Ranking ranking{{"a", "", 1.0F}, {"b", "", -1.0F}, {"c", "", 2.5F}, {"d", "", 0.0F}};
  KeepLargest(ranking);
  EXPECT_THAT(NamesOf(ranking), ElementsAre("c", "a", "d", "b"));
}

TEST(KeepLargest, PutsNanLast) {
  Ranking ranking{{"nan", "", kNan}, {"least", "", -kInfinity}, {"most", "", kInfinity},
                  {"one", "", 1.0F}, {"minus", "", -kNan},      {"two", "", 2.0F}};
  KeepLargest(ranking);
  EXPECT_THAT(NamesOf(ranking), ElementsAre("most", "two", "one", "least", testing::_, testing::_));
}

TEST(KeepLargest, SortsAnyMixtureOfInfinitiesAndNan) {
  // A comparison that is inconsistent for NaN would let the sort access elements out of bounds.
  const float values[] = {kNan, 1.0F, kInfinity, -kInfinity, kNan, -2.0F, kInfinity};
  Ranking ranking;
  for (int i = 0; i < 10'000; ++i) ranking.push_back({"", "", values[i % 7 * (i % 11) % 7]});
  KeepLargest(ranking);
  ASSERT_EQ(ranking.size(), 20U);
  for (const TopAppEntry& entry : ranking) EXPECT_EQ(entry.Value, kInfinity);
}

TEST(KeepLargest, KeepsTheFirstTwenty) {
  Ranking ranking;
  for (int i = 0; i < 23; ++i) ranking.push_back({"", "", static_cast<float>(i)});
  KeepLargest(ranking);
  EXPECT_EQ(ranking.size(), 20U);
  EXPECT_EQ(ranking.back().Value, 3.0F);
}
