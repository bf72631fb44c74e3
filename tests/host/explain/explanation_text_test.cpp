#include "explain/explanation_text.h"

#include <rapidjson/document.h>

#include <string>

#include <gtest/gtest.h>

#include "ledger/fake_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace WattleafHost;
using TestSupport::Day;
using TestSupport::FakeDays;
using TestSupport::List;
using TestSupport::Sample;

namespace {

std::string AtTime(const std::string& time, const std::string& type = "PCM_SENSOR") {
  return Sample("2024-02-06T" + time, "36", type);
}

DayReport ReportOf(FakeDays days) {
  DayReport report;
  report.version = "1.2.3";
  report.date = "2024-02-06";
  report.day = ExplainDay(Day("2024-02-06"), days.Reader());
  report.files = {{"2024-02-06", SampleFileState::kRead, "", report.day.samples.size(), false},
                  {"2024-02-05", SampleFileState::kAbsent, "", 0, false}};
  report.ledger = LedgerState::kRead;
  return report;
}

const FakeDays kFourSamples{{"2024-02-06", List({AtTime("10:00:00"), AtTime("10:05:00"),
                                                 AtTime("10:10:00"), AtTime("10:15:00")})}};

}  // namespace

TEST(ExplanationText, ShowsEachIntervalTheSumTheDivisorAndTheLedger) {
  DayReport report = ReportOf(kFourSamples);
  report.bookedWh = 6.0F / 0.88F;
  report.relation = LedgerRelation::kEqual;
  EXPECT_EQ(ToText(report, /*eachInterval=*/false),
            "Energy of 2024-02-06\n"
            "  samples of 2024-02-06   4 samples\n"
            "  samples of 2024-02-05   no file\n"
            "  counted                 4 (PCM_CHARGER and PCM_SENSOR); of other types 0\n"
            "\n"
            "Intervals, in the order of the arithmetic\n"
            "     1  not booked  (none) - 10:00:00, 0 s: link to the day before: the neighbouring "
            "day has no readable sample\n"
            "     1  not booked  10:00:00 - 10:05:00, 300 s: the first interval of a day is never "
            "booked\n"
            "     2  booked      10:05:00 - 10:15:00, 600 s: 6.0000 Wh, sum 6.0000 Wh\n"
            "     1  not booked  10:15:00 - (none), 0 s: link to the day after: the neighbouring "
            "day has no readable sample\n"
            "\n"
            "  samples of now   6.0 Wh / 0.88 = 6.818181991577148 Wh\n"
            "  ledger           6.818181991577148 Wh\n"
            "  that is          the ledger has the same value\n");
}

TEST(ExplanationText, ShowsEveryIntervalIfAsked) {
  const std::string text = ToText(ReportOf(kFourSamples), /*eachInterval=*/true);
  EXPECT_NE(text.find("     1  booked      10:05:00 - 10:10:00, 300 s: 3.0000 Wh at 36.0000 W, "
                      "sum 3.0000 Wh\n"
                      "     1  booked      10:10:00 - 10:15:00, 300 s: 3.0000 Wh at 36.0000 W, "
                      "sum 6.0000 Wh\n"),
            std::string::npos)
      << text;
}

TEST(ExplanationText, NamesADayWithoutSamplesAndWithoutAValue) {
  DayReport report = ReportOf({});
  report.files = {{"2024-02-06", SampleFileState::kNotDecrypted, "", 0, false}};
  report.relation = LedgerRelation::kNothingToBook;
  EXPECT_EQ(ToText(report, false),
            "Energy of 2024-02-06\n"
            "  samples of 2024-02-06   cannot be decrypted on this machine\n"
            "\n"
            "  samples of now   0.0 Wh / 0.88 = 0.0 Wh\n"
            "  ledger           no value\n"
            "  that is          nothing is booked, and the samples give nothing; each pass tries "
            "again\n");
  report.ledger = LedgerState::kAbsent;
  EXPECT_NE(ToText(report, false).find("  ledger           no file; the next pass writes one\n"),
            std::string::npos);
}

TEST(ExplanationText, PrintsNoControlCharactersOfASample) {
  const std::string text = ToText(
      ReportOf({{"2024-02-06", List({AtTime("10:00:00"), Sample("\\u001b[31m", "36")})}}), false);
  EXPECT_EQ(text.find('\x1b'), std::string::npos);
  EXPECT_NE(text.find("?[31m"), std::string::npos) << text;
}

TEST(ExplanationText, OfAnHourShowsItsIntervalsAndItsSum) {
  FakeDays days{{"2024-02-06", List({AtTime("09:50:00"), AtTime("09:55:00"), AtTime("10:00:00"),
                                     AtTime("10:05:00"), AtTime("10:20:00"), AtTime("10:25:00")})}};
  HourReport report;
  report.date = "2024-02-06";
  report.hours = ExplainHours(Day("2024-02-06"), days.Reader());
  report.hour = 10;
  EXPECT_EQ(
      ToText(report, false),
      "Energy of 2024-02-06, hour 10 (command 4)\n"
      "\n"
      "Intervals, in the order of the arithmetic\n"
      "     1  booked      10:00:00 - 10:05:00, 300 s: 3.0000 Wh at 36.0000 W, sum 3.0000 Wh\n"
      "     1  not booked  10:05:00 - 10:20:00, 900 s: a gap of more than 600 seconds\n"
      "     1  booked      10:20:00 - 10:25:00, 300 s: 3.0000 Wh at 36.0000 W, sum 6.0000 Wh\n"
      "     1  not booked  10:25:00 - (none), 0 s: the last sample of a day begins no "
      "interval of an hour\n"
      "\n"
      "  hour 10:  6.0 Wh / 0.88 = 6.818181991577148 Wh\n");
  report.hour = 3;
  EXPECT_NE(ToText(report, false).find("hour 3:  no sum; command 4 shows 0.0\n"),
            std::string::npos);
}

TEST(ExplanationText, OfAnHourNamesTheHourThatHasItsEnergy) {
  FakeDays days{
      {"2024-02-06", List({AtTime("09:40:00"), AtTime("09:50:00"), AtTime("09:55:00", "PCM_SCREEN"),
                           AtTime("10:05:00"), AtTime("10:10:00"), AtTime("10:15:00")})}};
  HourReport report;
  report.date = "2024-02-06";
  report.hours = ExplainHours(Day("2024-02-06"), days.Reader());
  report.hour = 9;
  EXPECT_NE(ToText(report, false)
                .find("  counted with hour 10: the hour ended on a sample that does not count\n"),
            std::string::npos)
      << ToText(report, false);
  report.hour = 10;
  const std::string text = ToText(report, false);
  EXPECT_NE(text.find("09:40:00 - 09:50:00, 600 s: the first interval"), std::string::npos) << text;
}

TEST(ExplanationJson, HasEachIntervalAndTheLedger) {
  DayReport report = ReportOf(kFourSamples);
  report.bookedWh = 12.5F;
  report.relation = LedgerRelation::kFinal;
  rapidjson::Document json;
  json.Parse(ToJson(report).c_str());
  ASSERT_TRUE(json.IsObject());
  EXPECT_EQ(json["format"].GetInt(), 1);
  EXPECT_STREQ(json["host"].GetString(), "1.2.3");
  EXPECT_STREQ(json["date"].GetString(), "2024-02-06");
  EXPECT_STREQ(json["files"][1]["state"].GetString(), "no file");
  EXPECT_EQ(json["samples"].GetInt(), 4);
  EXPECT_EQ(json["counted"].GetInt(), 4);
  ASSERT_EQ(json["intervals"].Size(), 5U);
  EXPECT_STREQ(json["intervals"][0]["kind"].GetString(), "linkToDayBefore");
  EXPECT_TRUE(json["intervals"][0]["from"].IsNull());
  EXPECT_STREQ(json["intervals"][2]["from"].GetString(), "2024-02-06T10:05:00");
  EXPECT_EQ(json["intervals"][2]["seconds"].GetInt(), 300);
  EXPECT_TRUE(json["intervals"][2]["notBooked"].IsNull());
  EXPECT_TRUE(json["intervals"][1]["notBooked"].IsString());
  EXPECT_EQ(json["sumWh"].GetDouble(), 6.0);
  EXPECT_EQ(json["divisor"].GetDouble(), static_cast<double>(0.88F));
  EXPECT_EQ(json["energyWh"].GetDouble(), static_cast<double>(6.0F / 0.88F));
  EXPECT_EQ(json["ledgerWh"].GetDouble(), 12.5);
  EXPECT_STREQ(json["ledger"].GetString(), "read");
  EXPECT_NE(std::string(json["relation"].GetString()).find("booked earlier and final"),
            std::string::npos);
}

TEST(ExplanationJson, OfAnHourHasItsSums) {
  FakeDays days = kFourSamples;
  HourReport report;
  report.hour = 10;
  report.hours = ExplainHours(Day("2024-02-06"), days.Reader());
  rapidjson::Document json;
  json.Parse(ToJson(report).c_str());
  ASSERT_TRUE(json.IsObject());
  EXPECT_EQ(json["hour"].GetInt(), 10);
  ASSERT_EQ(json["sums"].Size(), 1U);
  EXPECT_EQ(json["sums"][0]["hour"].GetInt(), 10);
  EXPECT_EQ(json["sums"][0]["sumWh"].GetDouble(), 6.0);
  EXPECT_FALSE(json["sums"][0]["dropped"].GetBool());
  EXPECT_EQ(json["intervals"].Size(), 4U);
}

TEST(SampleFileText, SaysWhatBecameOfTheFile) {
  EXPECT_EQ(SampleFileText({"", SampleFileState::kAbsent, "", 0, false}), "no file");
  EXPECT_EQ(SampleFileText({"", SampleFileState::kLeftOut, "a link", 0, false}),
            "not read: a link");
  EXPECT_EQ(SampleFileText({"", SampleFileState::kNotDecrypted, "", 0, false}),
            "cannot be decrypted on this machine");
  EXPECT_EQ(SampleFileText({"", SampleFileState::kNoList, "", 0, false}),
            "decrypted, but not a list of samples");
  EXPECT_EQ(SampleFileText({"", SampleFileState::kRead, "", 1, false}), "1 sample");
  EXPECT_EQ(SampleFileText({"", SampleFileState::kRead, "", 480, true}),
            "480 samples, from a plain copy that a broken-off pass left");
}
