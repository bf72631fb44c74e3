#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>

#include "answer.h"
#include "json_report.h"

using namespace WattleafHost;

namespace {

constexpr int kUnknownStatus = 0x20000001;

}  // namespace

TEST(HostJsonReport, HasAllMembers) {
  Report report;
  report.version = "1.2.3";
  report.library = "C:\\x\\\"y\".dll";
  report.pass = "completed";
  report.simulatedCalls = {{"Call", "because"}};
  report.answers = {MakeAnswer(8, 0, "true"), MakeAnswer(99, kUnknownStatus, {})};
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

TEST(HostJsonReport, HasTheLogButNoPassWithoutServeOnce) {
  Report report;
  report.log = "C:\\log.txt";
  rapidjson::Document document;
  const std::string json = ToJson(report);
  ASSERT_FALSE(document.Parse(json.c_str()).HasParseError());
  EXPECT_FALSE(document.HasMember("pass"));
  EXPECT_STREQ(document["log"].GetString(), "C:\\log.txt");
}
