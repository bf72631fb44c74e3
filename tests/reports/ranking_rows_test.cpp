#include "reports/ranking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reports/fake_ranking.h"

// Rows of the store that are malformed or unusual.

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace std::string_literals;
using testing::ElementsAre;

TEST(RankApplications, SkipsRowsWithoutAMember) {
  const std::vector<std::string> rows{
      StoreRow("a", "A", "2"),
      R"({"DisplayName":"No Name","TimeStamp":"2026-11-14:09:00:00","TotalEnergy":1})",
      R"({"Name":"a","TimeStamp":"2026-11-14:09:00:00","TotalEnergy":1})",
      R"({"Name":"a","DisplayName":"No Time","TotalEnergy":100})",
      R"({"Name":"a","DisplayName":"No Energy","TimeStamp":"2026-11-14:09:00:00"})",
      "{}"};
  const Ranking ranking = FakeRanking().Rank(rows);
  EXPECT_THAT(NamesOf(ranking), ElementsAre("A"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(50.0F)) << "rows without a name count in the total";
}

TEST(RankApplications, TreatsAMemberOfAnotherTypeAsMissing) {
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

TEST(RankApplications, SkipsElementsThatAreNotObjects) {
  const Ranking ranking = FakeRanking().Rank(
      {"null", "7", R"("TotalEnergy")", "[]", "[[]]", "true", StoreRow("a", "A", "1")});
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(100.0F));
}

TEST(RankApplications, UsesTheFirstOfTwoEqualMembers) {
  const std::string row =
      R"({"Name":"a","Name":2,"DisplayName":"First","DisplayName":"Second",)"
      R"("TimeStamp":"2026-11-14:09:00:00","TimeStamp":"","TotalEnergy":1,"TotalEnergy":9})";
  const Ranking ranking = FakeRanking().Rank({row, StoreRow("b", "B", "3")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("B", "First"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(75.0F, 25.0F));
}

TEST(RankApplications, IgnoresRowsWithAMalformedTime) {
  for (const int days : {1, 1'000'000}) {
    const ReportingPeriod period(At("2026-11-14:10:30:15"), days);
    const Ranking ranking = FakeRanking().Rank(
        {StoreRow("a", "A", "1"), StoreRow("b", "B", "1", ""), StoreRow("c", "C", "1", "yesterday"),
         StoreRow("d", "D", "1", "1900-01-01:00:00:00")},
        period);
    EXPECT_THAT(ValuesOf(ranking), ElementsAre(100.0F)) << days;
  }
}

TEST(RankApplications, KeepsTheParsedPartOfAMalformedTime) {
  const Ranking ranking =
      FakeRanking().Rank({StoreRow("a", "Midnight", "1", "2026-11-14"),
                          StoreRow("b", "Nine", "3", "2026-11-14:09:00:00 and more")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("Nine", "Midnight"));
}

TEST(RankApplications, KeepsZerosInNames) {
  const Ranking ranking = FakeRanking().Rank(
      {StoreRow("a", "A"s, "1"), StoreRow("a", "A\0B"s, "2"), StoreRow("a", "\0"s, "3")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("\0"s, "A\0B"s, "A"s));
}

TEST(RankApplications, DistinguishesMembersThatDifferAfterAZero) {
  const std::string row =
      R"({"Name":"a","DisplayName\u0000":"Zero","DisplayName":"A",)"
      R"("TimeStamp":"2026-11-14:09:00:00","TotalEnergy\u0000":9,"TotalEnergy":1})";
  const Ranking ranking = FakeRanking().Rank({row, StoreRow("b", "B", "3")});
  EXPECT_THAT(NamesOf(ranking), ElementsAre("B", "A"));
  EXPECT_THAT(ValuesOf(ranking), ElementsAre(75.0F, 25.0F));
}
