#include "notebook_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

using Standin::MakeDay;
using Standin::ModelDay;
using Standin::ModelSample;
using Standin::ModelSettings;

constexpr ModelSettings kSettings{7, 60};
constexpr std::int64_t kDaySeconds = 86400;
constexpr std::int64_t kFirstDay = 20'000;
constexpr std::int64_t kDays = 400;

std::string Text(const std::vector<ModelSample>& samples) {
  std::string text;
  for (const ModelSample& sample : samples) {
    text += std::to_string(sample.offsetSeconds) + sample.type + sample.power + "\n";
  }
  return text;
}

/// FNV-1a.
std::uint64_t Fingerprint(const std::string& text) {
  std::uint64_t hash = 0xCBF29CE484222325ULL;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3ULL;
  return hash;
}

template <typename Use>
void ForEachDay(Use use) {
  for (std::int64_t number = kFirstDay; number < kFirstDay + kDays; ++number) {
    use(MakeDay(kSettings, {number, kDaySeconds}));
  }
}

TEST(NotebookModel, SameArgumentsGiveTheSameDay) {
  const ModelDay day{kFirstDay, kDaySeconds};
  EXPECT_EQ(Text(MakeDay(kSettings, day)), Text(MakeDay(kSettings, day)));
}

TEST(NotebookModel, AnotherSeedGivesOtherDays) {
  int equal = 0;
  for (std::int64_t number = kFirstDay; number < kFirstDay + 30; ++number) {
    const auto samples = MakeDay(kSettings, {number, kDaySeconds});
    if (!samples.empty() && Text(samples) == Text(MakeDay({8, 60}, {number, kDaySeconds}))) ++equal;
  }
  EXPECT_EQ(equal, 0);
}

TEST(NotebookModel, SamplesStandInTheOrderOfTimeInsideTheirDay) {
  ForEachDay([](const std::vector<ModelSample>& samples) {
    EXPECT_TRUE(std::is_sorted(samples.begin(), samples.end(), [](const auto& a, const auto& b) {
      return a.offsetSeconds < b.offsetSeconds;
    }));
    if (samples.empty()) return;
    EXPECT_GE(samples.front().offsetSeconds, 0);
    EXPECT_LT(samples.back().offsetSeconds, kDaySeconds);
  });
}

TEST(NotebookModel, HasDaysOffAndDaysWithOneSample) {
  int off = 0;
  int single = 0;
  ForEachDay([&](const std::vector<ModelSample>& samples) {
    if (samples.empty()) ++off;
    if (samples.size() == 1) ++single;
  });
  EXPECT_GT(off, kDays / 40);
  EXPECT_GT(single, kDays / 80);
}

TEST(NotebookModel, IsAwakeWhileTheClocksChange) {
  for (const std::int64_t length : {kDaySeconds - 3600, kDaySeconds + 3600}) {
    const auto samples = MakeDay(kSettings, {kFirstDay, length});
    const auto awakeIn = [&](std::int64_t hour) {
      return std::any_of(samples.begin(), samples.end(), [hour](const ModelSample& sample) {
        return sample.offsetSeconds / 3600 == hour;
      });
    };
    EXPECT_TRUE(awakeIn(1) && awakeIn(2) && awakeIn(3)) << length;
  }
}

// The value was recorded once; it tells that no platform or library makes other days.
TEST(NotebookModel, IsTheSameOnEveryPlatform) {
  std::string text;
  ForEachDay([&text](const std::vector<ModelSample>& samples) { text += Text(samples); });
  EXPECT_EQ(Fingerprint(text), 17'468'633'817'371'031'612ULL);
}

}  // namespace
