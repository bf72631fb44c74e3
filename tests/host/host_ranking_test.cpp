#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "printable.h"
#include "ranking.h"
#include "ranking_table.h"

using namespace WattleafHost;
using testing::HasSubstr;

namespace {

const std::string kFull = "\xE2\x96\x88";

std::string Blocks(std::size_t count) {
  std::string bar;
  for (std::size_t i = 0; i < count; ++i) bar += kFull;
  return bar;
}

bool IsOakIcon(const std::string& path) { return path == "C:\\i\\Oak.png"; }

}  // namespace

TEST(HostRanking, ReadsNameIconAndShareInOrder) {
  const auto ranking = TryReadRanking(
      R"([{"Name":"Oak","Icon":"C:\\i\\Oak.png","Value":60.5},{"Name":"","Icon":"","Value":0}])");
  ASSERT_TRUE(ranking.has_value());
  ASSERT_EQ(ranking->size(), 2u);
  EXPECT_EQ((*ranking)[0].name, "Oak");
  EXPECT_EQ((*ranking)[0].icon, "C:\\i\\Oak.png");
  EXPECT_EQ((*ranking)[0].share, 60.5);
  EXPECT_EQ((*ranking)[1].name, "");
}

TEST(HostRanking, EmptyArrayIsAnEmptyRanking) {
  const auto ranking = TryReadRanking("[]");
  ASSERT_TRUE(ranking.has_value());
  EXPECT_TRUE(ranking->empty());
}

TEST(HostRanking, RefusesTextsOfAnotherShape) {
  const char* const texts[] = {
      "",
      "true",
      "{}",
      "[1]",
      "[{}]",
      // As the service leaves it where a share is no number.
      R"([{"Name":"a","Icon":"","Value":)",
      R"([{"Name":"a","Icon":"","Value":1})",
      R"([{"Name":1,"Icon":"","Value":1}])",
      R"([{"Name":"a","Icon":null,"Value":1}])",
      R"([{"Name":"a","Icon":"","Value":"1"}])",
      R"([{"Name":"a","Value":1}])",
      R"([{"Name":"a","Icon":""}])",
      R"([{"Icon":"","Value":1}])",
  };
  for (const char* text : texts) EXPECT_FALSE(TryReadRanking(text).has_value()) << text;
}

TEST(HostRanking, DeepNestingDoesNotExhaustTheStack) {
  EXPECT_FALSE(TryReadRanking(std::string(1000000, '[')).has_value());
}

TEST(HostRanking, RequestIsFolderMarkAndDays) {
  EXPECT_EQ(RankingRequest("C:\\i", 30), "C:\\i?30");
  EXPECT_EQ(DaysOfRequest("C:\\i?30"), "30");
  EXPECT_EQ(DaysOfRequest("a?b?7"), "b?7");
  EXPECT_EQ(DaysOfRequest("C:\\i"), "0");
}

TEST(HostRankingTable, ShowsRankNameShareAndIconThenTheBars) {
  const Ranking ranking = {
      {"Oak", "C:\\i\\Oak.png", 50.0}, {"Fir Notes", "C:\\i\\Fir.png", 25.0}, {"Elm", "", 1.0}};
  EXPECT_EQ(RankingTable(ranking, "7", IsOakIcon),
            "Applications of the last 7 days, percent of the energy (command 2)\n"
            "  Rank  Application                    Share  Icon\n"
            "  ----  --------------------------  --------  -------\n"
            "     1  Oak                          50.00 %  written\n"
            "     2  Fir Notes                    25.00 %  missing\n"
            "     3  Elm                           1.00 %  none\n"
            "\n"
            "        Oak  50.00  " +
                Blocks(40) +
                "\n"
                "  Fir Notes  25.00  " +
                Blocks(20) +
                "\n"
                "        Elm   1.00  " +
                Blocks(1) + "\n");
}

TEST(HostRankingTable, StaysWithin80ColumnsAndOnItsLines) {
  const Ranking ranking = {{std::string(500, 'x'), "", 100.0}, {"a\x1B[2J\nb", "", 99.99}};
  std::istringstream lines(RankingTable(ranking, std::string(100, '9'), IsOakIcon));
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_LE(CharacterCount(line), 80u) << line;
    EXPECT_EQ(line.find('\x1B'), std::string::npos);
  }
  EXPECT_EQ(count, 8u);
}

TEST(HostRankingTable, EmptyRankingGivesNoLine) {
  EXPECT_EQ(RankingTable({}, "30", IsOakIcon), "");
}

TEST(HostRankingTable, SharesOutsideTheUsualDoNoHarm) {
  const Ranking ranking = {{"a", "", 1e300}, {"b", "", 0.0}, {"c", "", -5.0}};
  EXPECT_THAT(RankingTable(ranking, "30", IsOakIcon), HasSubstr("-5.00 %"));
}
