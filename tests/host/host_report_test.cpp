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

namespace {

constexpr int kUnknown = 0x20000001;
constexpr int kNone = 0x20000002;

const char* const kHours =
    R"({"Range":[0.0,3.5],"Value":[{"Time":"2:00","Value":0.0},{"Time":"3:00","Value":3.5}]})";

}  // namespace

TEST(HostAnswer, StatusIsZeroOrHex) {
  EXPECT_EQ(StatusText(0), "0");
  EXPECT_EQ(StatusText(kUnknown), "0x20000001");
  EXPECT_EQ(StatusText(-1), "0xffffffff");
}

TEST(HostAnswer, StatusesHaveWords) {
  EXPECT_EQ(StatusMeaning({99, kUnknown, {}}), "unknown command");
  EXPECT_EQ(StatusMeaning({4, kNone, {}}), "no result");
  EXPECT_EQ(StatusMeaning({2, kNone, {}}), "no answer yet");
  EXPECT_EQ(StatusMeaning({9, kNone, {}}), "no answer yet");
  EXPECT_EQ(StatusMeaning({4, 5, {}}), "unknown status");
}

TEST(HostAnswer, OnlyTheReportsMayBeEmpty) {
  EXPECT_TRUE(IsAsExpected({1, 0, "0.000000"}));
  EXPECT_TRUE(IsAsExpected({2, kNone, {}}));
  EXPECT_TRUE(IsAsExpected({9, kNone, {}}));
  EXPECT_FALSE(IsAsExpected({4, kNone, {}}));
  EXPECT_FALSE(IsAsExpected({2, kUnknown, {}}));
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
            " 2  Top 20 applications            0x20000002  no answer yet\n"
            " 4  Energy by hour                 0           2 values, 0.00 to 3.50 Wh\n");
}

TEST(HostAnswerTable, LongAnswersAreCut) {
  std::istringstream lines(AnswerTable({{2, 0, std::string(5000, 'x')}}));
  for (std::string line; std::getline(lines, line);) EXPECT_LE(CharacterCount(line), 80u) << line;
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
  report.playedCalls = {{"Call", "because"}};
  report.answers = {{8, 0, "true"}, {99, kUnknown, {}}};
  report.dataFolder = "C:\\data";
  const std::string json = ToJson(report);
  EXPECT_EQ(json, R"({"host":"1.2.3","library":"C:\\x\\\"y\".dll","pass":"completed",)"
                  R"("playedCalls":[{"name":"Call","reason":"because"}],"commands":[)"
                  R"({"number":8,"title":"Has the data changed?","status":0,"text":"true"},)"
                  R"({"number":99,"title":"unknown command","status":536870913,"text":null}],)"
                  R"("dataFolder":"C:\\data","log":null})");
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
