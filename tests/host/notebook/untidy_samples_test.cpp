// The service with samples as untidy as those of real notebooks. The tests use the days before
// today and choose a seed under which these days have the form that they need.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/notebook/notebook.h"
#include "host/notebook/notebook_days.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

using testing::StartsWith;
using TestSupport::FileExists;
using TestSupport::NotebookDays;
using TestSupport::ReadWholeFile;
using TestSupport::ScopedVariable;

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kData[] = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
constexpr std::int64_t kDaySeconds = 86400;
constexpr std::int64_t kLongestInterval = 600;
constexpr double kDivisor = 0.88;

struct Sample {
  std::string type;
  std::int64_t time;  // of the day, in seconds, as the clock shows it
  double power;
};

/// The watt-seconds of an interval; 0 if it does not count.
double Energy(std::int64_t seconds, double power) {
  const bool counts = seconds >= 1 && seconds <= kLongestInterval;
  return counts ? static_cast<double>(seconds) * power : 0.0;
}

class UntidySamples : public TestSupport::OnNotebook {
 protected:
  void SetUp() override {
    OnNotebook::SetUp();
    if (IsSkipped()) return;
    if (days.ClocksChange()) GTEST_SKIP() << "the clocks change in these days";
    fs::remove_all(kData);
  }

  /// Completes a pass with the seed's samples of ten days.
  void Serve(std::uint64_t seed) {
    const ScopedVariable chosen(L"WATTLEAF_COLLECTOR_SEED", std::to_wstring(seed));
    const ScopedVariable period(L"WATTLEAF_COLLECTOR_PERIOD",
                                std::to_wstring(NotebookDays::kPeriodSeconds));
    const ScopedVariable truth(L"WATTLEAF_COLLECTOR_TRUTH", TruthPath());
    answers_ = TestSupport::RunOnNotebook({L"serve-once", L"--json"}).host.output;
  }
  std::string Answer(unsigned int command) const {
    rapidjson::Document document;
    document.Parse(answers_.c_str());
    if (document.HasParseError()) throw std::runtime_error("no JSON: " + answers_);
    return document["commands"][command - 1]["text"].GetString();
  }

  double BookedEnergy(int back) const {
    rapidjson::Document ledger;
    ledger.Parse(ReadWholeFile(std::wstring(kData) + L"\\PowerConsumption.json").c_str());
    for (const auto& row : ledger.GetArray()) {
      if (row["Key"].GetString() == days.DayBack(back).date) return row["Value"].GetDouble();
    }
    throw std::runtime_error("no such day in the ledger");
  }
  bool HasSampleFile(int back) const {
    const std::string& date = days.DayBack(back).date;
    const std::wstring wide(date.begin(), date.end());
    return FileExists(std::wstring(kData) + L"\\PcmSampleData_" + wide + L".json");
  }

  /// The samples that the collector wrote, in the file's order.
  std::vector<Sample> Written(int back) const {
    rapidjson::Document truth;
    truth.Parse(ReadWholeFile(TruthPath()).c_str());
    std::vector<Sample> samples;
    for (const auto& day : truth["days"].GetArray()) {
      if (day["date"].GetString() != days.DayBack(back).date) continue;
      for (const auto& sample : day["samples"].GetArray()) {
        int hour = 0;
        int minute = 0;
        int second = 0;
        std::sscanf(sample["SampleTime"].GetString() + 11, "%d:%d:%d", &hour, &minute, &second);
        const auto& power = sample["Power"];
        samples.push_back({sample["TelemetryType"].GetString(), (hour * 60 + minute) * 60 + second,
                           power.IsString() ? std::stod(power.GetString()) : 0.0});
      }
    }
    return samples;
  }
  /// The watt-hours of a day whose following day has no samples any more: the pass deletes the
  /// samples of booked days, except for the neighbours of today.
  double ExpectedEnergy(int back) const {
    const auto samples = Written(back);
    const auto before = Written(back + 1);
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < samples.size(); ++i) {
      if (samples[i].type != "PCM_CHARGER" && samples[i].type != "PCM_SENSOR") continue;
      if (i > 0) sum += Energy(samples[i + 1].time - samples[i].time, samples[i].power);
      if (i == 0 && !before.empty()) {
        sum += Energy(samples[0].time + kDaySeconds - before.back().time, before.back().power);
      }
    }
    return sum / 3600.0 / kDivisor;
  }

  std::wstring TruthPath() const { return folder_.File(L"truth.json"); }

  const NotebookDays days;

 private:
  const TestSupport::TempFolder folder_;
  std::string answers_;
};

}  // namespace

TEST_F(UntidySamples, DayWithoutSamplesIsZeroInTheWeekAndKeepsItsFile) {
  Serve(days.SeedWhere([this](std::uint64_t seed) {
    const auto day = days.SamplesOf(seed, 3);
    return day && day->empty() && days.HasEnergy(seed, 4);
  }));
  EXPECT_EQ(BookedEnergy(3), 0.0);
  EXPECT_TRUE(HasSampleFile(3));
  EXPECT_GT(BookedEnergy(4), 0.0);
  EXPECT_FALSE(HasSampleFile(4));
  rapidjson::Document week;
  week.Parse(Answer(5).c_str());
  // From seven days ago to yesterday.
  EXPECT_EQ(week["Value"][4]["Value"].GetDouble(), 0.0);
  EXPECT_GT(week["Value"][3]["Value"].GetDouble(), 0.0);
}

TEST_F(UntidySamples, WeekOfSleepIsAWeekOfZerosAndDoesNotChangeTheDaysBeforeIt) {
  Serve(days.SeedWhere([this](std::uint64_t seed) {
    for (int back = 1; back <= 7; ++back) {
      if (days.SamplesOf(seed, back)) return false;
    }
    return days.HasEnergy(seed, 8);
  }));
  EXPECT_THAT(Answer(5), StartsWith(R"({"Range":[0.0,0.0],)"));
  for (int back = 1; back <= 7; ++back) EXPECT_FALSE(HasSampleFile(back)) << back;
  EXPECT_NEAR(BookedEnergy(8), ExpectedEnergy(8), BookedEnergy(8) * 1e-4);
}

TEST_F(UntidySamples, ClockThatIsSetBackAddsNoEnergyForTheStepBack) {
  Serve(days.SeedWhere([this](std::uint64_t seed) {
    const auto day = days.SamplesOf(seed, 3);
    return days.HasEnergy(seed, 3) && day->back().clockSeconds < 0 && days.HasEnergy(seed, 2) &&
           days.HasEnergy(seed, 4);
  }));
  const auto samples = Written(3);
  int steps = 0;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    if (samples[i].time < samples[i - 1].time) ++steps;
  }
  ASSERT_EQ(steps, 1);
  EXPECT_GT(BookedEnergy(3), 0.0);
  EXPECT_NEAR(BookedEnergy(3), ExpectedEnergy(3), BookedEnergy(3) * 1e-4);
  EXPECT_FALSE(HasSampleFile(3));
}

TEST_F(UntidySamples, GapAcrossMidnightAddsNoEnergyToEitherDay) {
  const auto gap = [this](std::uint64_t seed) -> std::int64_t {
    const auto before = days.SamplesOf(seed, 4);
    const auto day = days.SamplesOf(seed, 3);
    if (!days.HasEnergy(seed, 4) || !days.HasEnergy(seed, 3) || !days.HasEnergy(seed, 2)) return 0;
    if (before->back().clockSeconds != 0 || day->back().clockSeconds != 0) return 0;
    return kDaySeconds - before->back().offsetSeconds + day->front().offsetSeconds;
  };
  Serve(days.SeedWhere([&gap](std::uint64_t seed) {
    return gap(seed) > kLongestInterval && gap(seed) < 2 * kLongestInterval;
  }));
  const auto before = Written(4);
  const auto day = Written(3);
  ASSERT_GT(day.front().time + kDaySeconds - before.back().time, kLongestInterval);
  EXPECT_NEAR(BookedEnergy(3), ExpectedEnergy(3), BookedEnergy(3) * 1e-4);
  EXPECT_NEAR(BookedEnergy(4), ExpectedEnergy(4), BookedEnergy(4) * 1e-4);
}
