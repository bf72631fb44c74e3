// The table of answers, the charts and the table of applications.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "answers/answer.h"
#include "answers/answer_table.h"
#include "host/answers/answer_blocks.h"
#include "text/printable.h"

using namespace WattleafHost;
using testing::HasSubstr;
using TestSupport::Blocks;

namespace {

constexpr int kNoResult = 0x20000002;

const char* const kTableHours =
    R"({"Range":[0.0,3.5],"Value":[{"Time":"2:00","Value":0.0},{"Time":"3:00","Value":3.5}]})";

const char* const kTableApps =
    R"([{"Name":"Meadow Office","Icon":"C:\\i\\Meadow Office.png","Value":12.34},)"
    R"({"Name":"Oak","Icon":"","Value":0.5}])";

FileExists Always(bool exists) {
  return [exists](const std::string&) { return exists; };
}

bool IsOakIcon(const std::string& path) { return path == "C:\\i\\Oak.png"; }

}  // namespace

TEST(HostAnswerTable, HasNumberTitleStatusAndAnswerWithin80Columns) {
  const std::string table = AnswerTable(
      {MakeAnswer(8, 0, "true"), MakeAnswer(2, kNoResult, {}), MakeAnswer(4, 0, kTableHours)});
  EXPECT_EQ(table,
            "No  Command                        Status      Answer\n"
            "--  -----------------------------  ----------  ---------------------------------\n"
            " 8  Has the data changed?          0           true\n"
            " 2  Top 20 applications            0x20000002  no readable store\n"
            " 4  Energy by hour                 0           2 values, 0.00 to 3.50 Wh\n");
}

TEST(HostAnswerTable, CutsLongAnswers) {
  std::istringstream lines(AnswerTable({MakeAnswer(2, 0, std::string(5000, 'x'))}));
  for (std::string line; std::getline(lines, line);) EXPECT_LE(CharacterCount(line), 80u) << line;
}

TEST(HostAnswerTable, HasTheNumberOfApplicationsAndTheirShares) {
  EXPECT_THAT(AnswerTable({MakeAnswer(2, 0, kTableApps)}),
              HasSubstr("0           2 applications, 0.50 to 12.34 %\n"));
  EXPECT_THAT(AnswerTable({MakeAnswer(2, 0, "[]")}), HasSubstr("0           no applications\n"));
}

TEST(HostAnswerTable, SaysThatThereAreNoEnergyProblems) {
  EXPECT_THAT(AnswerTable({MakeAnswer(9, 0, "[]")}),
              HasSubstr("0           [], never filled by the library\n"));
  EXPECT_THAT(AnswerTable({MakeAnswer(9, 0, "[{}]")}), HasSubstr("0           [{}]\n"));
  EXPECT_THAT(AnswerTable({MakeAnswer(5, 0, "[]")}), HasSubstr("0           []\n"));
}

TEST(HostAnswerTable, PrintsAResultOfCommand2ThatIsNotAListUnchanged) {
  const std::string cut = R"([{"Name":"Oak","Icon":"","Value":)";
  EXPECT_THAT(AnswerTable({MakeAnswer(2, 0, cut)}), HasSubstr(R"([{"Name":"Oak","Icon":"","Value":)"
                                                              "\n"));
  EXPECT_EQ(
      AnswerRanking(MakeAnswer(2, 0, cut), "30", Always(true)),
      "Top 20 applications (command 2), a text that is not a list of applications:\n" + cut + "\n");
}

TEST(HostAnswerTable, PrintsARankingForCommand2Only) {
  EXPECT_EQ(AnswerRanking(MakeAnswer(9, 0, "[]"), "30", Always(true)), "");
  EXPECT_EQ(AnswerRanking(MakeAnswer(5, 0, kTableApps), "30", Always(true)), "");
  EXPECT_EQ(AnswerRanking(MakeAnswer(2, kNoResult, {}), "30", Always(true)), "");
  EXPECT_EQ(AnswerRanking(MakeAnswer(2, 0, "[]"), "30", Always(true)), "");
  EXPECT_THAT(AnswerRanking(MakeAnswer(2, 0, kTableApps), "30", Always(true)),
              HasSubstr("Meadow Office"));
}

TEST(HostAnswerTable, PrintsChartsForSeriesOnly) {
  EXPECT_EQ(AnswerChart(MakeAnswer(8, 0, "true")), "");
  EXPECT_EQ(AnswerChart(MakeAnswer(8, 0, kTableHours)), "");
  EXPECT_EQ(AnswerChart(MakeAnswer(4, kNoResult, {})), "");
  EXPECT_EQ(AnswerChart(MakeAnswer(4, 0, "not a series")), "");
  EXPECT_EQ(AnswerChart(MakeAnswer(4, 0, kTableHours))
                .rfind("Last 12 hours, Wh (command 4)\n  2:00  0.00\n", 0),
            0u);
}

TEST(HostRankingTable, HasRankNameShareAndIconThenTheBars) {
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

TEST(HostRankingTable, HasLinesOfAtMost80ColumnsWithoutControlCharacters) {
  const Ranking ranking = {{std::string(500, 'x'), "", 100.0}, {"a\x1B[2J\nb", "", 99.99}};
  std::istringstream lines(RankingTable(ranking, std::string(100, '9'), IsOakIcon));
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_LE(CharacterCount(line), 80u) << line;
    EXPECT_EQ(line.find('\x1B'), std::string::npos);
  }
  EXPECT_EQ(count, 8u);
}

TEST(HostRankingTable, IsEmptyForAnEmptyRanking) {
  EXPECT_EQ(RankingTable({}, "30", IsOakIcon), "");
}

TEST(HostRankingTable, PrintsHugeAndNegativeShares) {
  const Ranking ranking = {{"a", "", 1e300}, {"b", "", 0.0}, {"c", "", -5.0}};
  EXPECT_THAT(RankingTable(ranking, "30", IsOakIcon), HasSubstr("-5.00 %"));
}
