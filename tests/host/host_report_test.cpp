#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <sstream>
#include <string>

#include "answer.h"
#include "answer_table.h"
#include "command_titles.h"
#include "json_report.h"
#include "printable.h"

using namespace WattleafHost;
using testing::HasSubstr;

namespace {

constexpr int kUnknown = 0x20000001;
constexpr int kNone = 0x20000002;

const char* const kHours =
    R"({"Range":[0.0,3.5],"Value":[{"Time":"2:00","Value":0.0},{"Time":"3:00","Value":3.5}]})";

const char* const kApps =
    R"([{"Name":"Meadow Office","Icon":"C:\\i\\Meadow Office.png","Value":12.34},)"
    R"({"Name":"Oak","Icon":"","Value":0.5}])";

IsThere Always(bool there) {
  return [there](const std::string&) { return there; };
}

}  // namespace

TEST(HostAnswer, StatusIsZeroOrHex) {
  EXPECT_EQ(StatusText(0), "0");
  EXPECT_EQ(StatusText(kUnknown), "0x20000001");
  EXPECT_EQ(StatusText(-1), "0xffffffff");
}

TEST(HostAnswer, StatusesHaveWords) {
  EXPECT_EQ(StatusMeaning({99, kUnknown, {}}), "unknown command");
  EXPECT_EQ(StatusMeaning({4, kNone, {}}), "no result");
  EXPECT_EQ(StatusMeaning({2, kNone, {}}), "no report yet");
  EXPECT_EQ(StatusMeaning({9, kNone, {}}), "no result");
  EXPECT_EQ(StatusMeaning({4, 5, {}}), "unknown status");
}

TEST(HostAnswer, AfterAPassEveryCommandHasAnAnswer) {
  for (unsigned int number = 1; number <= 10; ++number) {
    EXPECT_TRUE(IsAsExpected({number, 0, "0.000000"})) << number;
    EXPECT_FALSE(IsAsExpected({number, kNone, {}})) << number;
    EXPECT_FALSE(IsAsExpected({number, kUnknown, {}})) << number;
  }
}

TEST(HostTitles, EveryCommandHasOneAndNoOtherNumberDoes) {
  for (unsigned int number = 1; number <= 10; ++number) {
    EXPECT_NE(TitleOf(number), "unknown command") << number;
    EXPECT_EQ(!ChartTitleOf(number).empty(), number >= 4 && number <= 6) << number;
  }
  EXPECT_EQ(TitleOf(0), "unknown command");
  EXPECT_EQ(TitleOf(11), "unknown command");
}

TEST(HostAnswerTable, ShowsNumberTitleStatusAndAnswerWithin80Columns) {
  const std::string table = AnswerTable({{8, 0, "true"}, {2, kNone, {}}, {4, 0, kHours}});
  EXPECT_EQ(table,
            "No  Command                        Status      Answer\n"
            "--  -----------------------------  ----------  ---------------------------------\n"
            " 8  Has the data changed?          0           true\n"
            " 2  Top 20 applications            0x20000002  no report yet\n"
            " 4  Energy by hour                 0           2 values, 0.00 to 3.50 Wh\n");
}

TEST(HostAnswerTable, LongAnswersAreCut) {
  std::istringstream lines(AnswerTable({{2, 0, std::string(5000, 'x')}}));
  for (std::string line; std::getline(lines, line);) EXPECT_LE(CharacterCount(line), 80u) << line;
}

TEST(HostAnswerTable, TellsHowManyApplicationsAndTheirShares) {
  EXPECT_THAT(AnswerTable({{2, 0, kApps}}),
              HasSubstr("0           2 applications, 0.50 to 12.34 %\n"));
  EXPECT_THAT(AnswerTable({{2, 0, "[]"}}), HasSubstr("0           no applications\n"));
}

TEST(HostAnswerTable, SaysInWordsThatThereAreNoEnergyProblems) {
  EXPECT_THAT(AnswerTable({{9, 0, "[]"}}), HasSubstr("0           [], no energy problems\n"));
  EXPECT_THAT(AnswerTable({{9, 0, "[{}]"}}), HasSubstr("0           [{}]\n"));
  EXPECT_THAT(AnswerTable({{5, 0, "[]"}}), HasSubstr("0           []\n"));
}

TEST(HostAnswerTable, TextThatIsNoListOfApplicationsStandsAsItIs) {
  const std::string cut = R"([{"Name":"Oak","Icon":"","Value":)";
  EXPECT_THAT(AnswerTable({{2, 0, cut}}), HasSubstr(R"([{"Name":"Oak","Icon":"","Value":)"
                                                    "\n"));
  EXPECT_EQ(
      AnswerRanking({2, 0, cut}, "30", Always(true)),
      "Top 20 applications (command 2), a text that is no list of applications:\n" + cut + "\n");
}

TEST(HostAnswerTable, RankingBelongsToCommand2Only) {
  EXPECT_EQ(AnswerRanking({9, 0, "[]"}, "30", Always(true)), "");
  EXPECT_EQ(AnswerRanking({5, 0, kApps}, "30", Always(true)), "");
  EXPECT_EQ(AnswerRanking({2, kNone, {}}, "30", Always(true)), "");
  EXPECT_EQ(AnswerRanking({2, 0, "[]"}, "30", Always(true)), "");
  EXPECT_THAT(AnswerRanking({2, 0, kApps}, "30", Always(true)), HasSubstr("Meadow Office"));
}

TEST(HostAnswerTable, ChartsBelongToTheSeriesOnly) {
  EXPECT_EQ(AnswerChart({8, 0, "true"}), "");
  EXPECT_EQ(AnswerChart({8, 0, kHours}), "");
  EXPECT_EQ(AnswerChart({4, kNone, {}}), "");
  EXPECT_EQ(AnswerChart({4, 0, "not a series"}), "");
  EXPECT_EQ(AnswerChart({4, 0, kHours}).rfind("Last 12 hours, Wh (command 4)\n  2:00  0.00\n", 0),
            0u);
}

TEST(HostJsonReport, HoldsEverythingForMachines) {
  Report report;
  report.version = "1.2.3";
  report.library = "C:\\x\\\"y\".dll";
  report.pass = "completed";
  report.simulatedCalls = {{"Call", "because"}};
  report.answers = {{8, 0, "true"}, {99, kUnknown, {}}};
  report.dataFolder = "C:\\data";
  report.iconFolder = "C:\\icons";
  report.days = 7;
  const std::string json = ToJson(report);
  EXPECT_EQ(json, R"({"host":"1.2.3","library":"C:\\x\\\"y\".dll","pass":"completed",)"
                  R"("simulatedCalls":[{"name":"Call","reason":"because"}],"commands":[)"
                  R"({"number":8,"title":"Has the data changed?","status":0,"text":"true"},)"
                  R"({"number":99,"title":"unknown command","status":536870913,"text":null}],)"
                  R"("dataFolder":"C:\\data","iconFolder":"C:\\icons","days":7,"log":null})");
}

TEST(HostJsonReport, NamesTheLogAndLeavesAMissingPassOut) {
  Report report;
  report.log = "C:\\log.txt";
  rapidjson::Document document;
  const std::string json = ToJson(report);
  ASSERT_FALSE(document.Parse(json.c_str()).HasParseError());
  EXPECT_FALSE(document.HasMember("pass"));
  EXPECT_STREQ(document["log"].GetString(), "C:\\log.txt");
}
