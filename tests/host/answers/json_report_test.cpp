#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>

#include "answers/answer.h"
#include "answers/json_report.h"

using namespace WattleafHost;

namespace {

constexpr int kUnknownStatus = 0x20000001;

/// What the report has of one answer, from its value on.
std::string ValuePart(unsigned int number, int status, const std::string& text) {
  Report report;
  report.answers = {MakeAnswer(number, status, text)};
  const std::string json = ToJson(report);
  const auto begin = json.find("\"value\":");
  return json.substr(begin, json.find("],\"dataFolder\"") - begin);
}

}  // namespace

TEST(HostJsonReport, HasAllMembers) {
  Report report;
  report.version = "1.2.3";
  report.time = "2026-11-22T14:20:00+01:00";
  report.zone = "Zone";
  report.library = "C:\\x\\\"y\".dll";
  report.pass = "completed";
  report.simulatedCalls = {{"Call", "because"}};
  report.answers = {MakeAnswer(8, 0, "true"), MakeAnswer(99, kUnknownStatus, {})};
  report.dataFolder = "C:\\data";
  report.iconFolder = "C:\\icons";
  report.days = 7;
  const std::string json = ToJson(report);
  EXPECT_EQ(
      json,
      R"({"formatVersion":1,"host":"1.2.3",)"
      R"("time":"2026-11-22T14:20:00+01:00","zone":"Zone","library":"C:\\x\\\"y\".dll","pass":"completed",)"
      R"("simulatedCalls":[{"name":"Call","reason":"because"}],"commands":[)"
      R"({"number":8,"title":"Has the data changed?","status":0,"text":"true",)"
      R"("value":true},)"
      R"({"number":99,"title":"unknown command","status":536870913,"text":null,)"
      R"("value":null}],)"
      R"("dataFolder":"C:\\data","iconFolder":"C:\\icons","days":7,"log":null})");
}

TEST(HostJsonReport, HasTheLogButNoPassWithoutServeOnce) {
  Report report;
  report.log = "C:\\log.txt";
  rapidjson::Document document;
  const std::string json = ToJson(report);
  ASSERT_FALSE(document.Parse(json.c_str()).HasParseError());
  EXPECT_FALSE(document.HasMember("pass"));
  EXPECT_STREQ(document["log"].GetString(), "C:\\log.txt");
}

TEST(HostJsonReport, HasTheParsedTextAsValue) {
  EXPECT_EQ(ValuePart(1, 0, "216.159637"), R"("value":216.159637})");
  EXPECT_EQ(ValuePart(7, 0, "-1"), R"("value":-1})");
  EXPECT_EQ(ValuePart(9, 0, "[]"), R"("value":[]})");
  EXPECT_EQ(ValuePart(5, 0, R"({"Range":[0.0,1.5], "Value":[{"Day":"Mon","Value":1.5}]})"),
            R"("value":{"Range":[0.0,1.5],"Value":[{"Day":"Mon","Value":1.5}]}})");
  // A parser that rounds on the way reads 0.0017806957475841043.
  const std::string number = ValuePart(1, 0, "0.0017806957475841045").substr(8);
  EXPECT_EQ(std::stod(number), 0.0017806957475841045);
}

TEST(HostJsonReport, HasNoValueForATextThatIsNotJson) {
  EXPECT_EQ(ValuePart(1, 0, "inf"), R"("value":null})");
  EXPECT_EQ(ValuePart(5, 0, "{\"Range\":"), R"("value":null})");
  EXPECT_EQ(ValuePart(5, 0, "1 2"), R"("value":null})");
  EXPECT_EQ(ValuePart(5, 0, "\"\xFF\""), R"("value":null})");
  EXPECT_EQ(ValuePart(5, 0, ""), R"("value":null})");
}

TEST(HostJsonReport, ReadsADeepTextWithoutRecursion) {
  const std::string deep = std::string(1'000'000, '[') + std::string(1'000'000, ']');
  EXPECT_EQ(ValuePart(5, 0, deep), "\"value\":" + deep + "}");
}

TEST(HostJsonReport, HasTheShareOfEverythingElseForCommand2) {
  EXPECT_EQ(
      ValuePart(2, 0,
                R"([{"Name":"a","Icon":"","Value":50.0},{"Name":"b","Icon":"","Value":12.5}])"),
      R"("value":[{"Name":"a","Icon":"","Value":50.0},{"Name":"b","Icon":"","Value":12.5}],)"
      R"("everythingElsePercent":37.5})");
  EXPECT_EQ(ValuePart(2, 0, "[]"), R"("value":[],"everythingElsePercent":null})");
  EXPECT_EQ(ValuePart(2, kUnknownStatus, ""), R"("value":null,"everythingElsePercent":null})");
}
