#include "notebook_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/text_builders.h"

namespace {

using Standin::kHabitDays;
using Standin::MakeDay;
using Standin::ModelDay;
using Standin::ModelSample;
using Standin::ModelSettings;
using TestSupport::Fingerprint;

constexpr ModelSettings kSettings{7, 60};
constexpr std::int64_t kDaySeconds = 86400;
constexpr std::int64_t kFirstDay = 20'000;
constexpr std::int64_t kDays = 400;

using Day = std::optional<std::vector<ModelSample>>;

std::string Text(const Day& day) {
  if (!day) return "asleep\n";
  std::string text;
  for (const ModelSample& sample : *day) {
    text += std::to_string(sample.offsetSeconds) + sample.type + sample.power +
            std::to_string(sample.clockSeconds) + "\n";
  }
  return text;
}

template <typename Use>
void ForEachDay(Use use) {
  for (std::int64_t number = kFirstDay; number < kFirstDay + kDays; ++number) {
    use(MakeDay(kSettings, {number, kDaySeconds}));
  }
}

TEST(MakeDay, IsTheSameForEqualArguments) {
  const ModelDay day{kFirstDay, kDaySeconds};
  EXPECT_EQ(Text(MakeDay(kSettings, day)), Text(MakeDay(kSettings, day)));
}

TEST(MakeDay, DiffersForAnotherSeed) {
  int equal = 0;
  for (std::int64_t number = kFirstDay; number < kFirstDay + 30; ++number) {
    const Day samples = MakeDay(kSettings, {number, kDaySeconds});
    if (samples && !samples->empty() &&
        Text(samples) == Text(MakeDay({8, 60}, {number, kDaySeconds})))
      ++equal;
  }
  EXPECT_EQ(equal, 0);
}

TEST(MakeDay, OrdersSamplesByRealTimeWithinTheDay) {
  ForEachDay([](const Day& day) {
    if (!day || day->empty()) return;
    EXPECT_TRUE(std::is_sorted(day->begin(), day->end(), [](const auto& a, const auto& b) {
      return a.offsetSeconds < b.offsetSeconds;
    }));
    EXPECT_GE(day->front().offsetSeconds, 0);
    EXPECT_LT(day->back().offsetSeconds, kDaySeconds);
  });
}

TEST(MakeDay, ReturnsDaysOfSleepDaysWithoutSamplesAndWithOneSample) {
  int asleep = 0;
  int nothingMeasured = 0;
  int single = 0;
  ForEachDay([&](const Day& day) {
    if (!day) ++asleep;
    if (day && day->empty()) ++nothingMeasured;
    if (day && day->size() == 1) ++single;
  });
  EXPECT_GT(asleep, kDays / 8) << "each stretch has a week of sleep";
  EXPECT_GT(nothingMeasured, kDays / 80);
  EXPECT_GT(single, kDays / 80);
}

TEST(MakeDay, ContainsAWeekOfSleepInEachStretch) {
  constexpr std::int64_t kStretches = 20;
  std::int64_t weeks = 0;
  std::int64_t length = 0;
  for (std::int64_t day = 0; day < kStretches * kHabitDays; ++day) {
    length = MakeDay(kSettings, {kFirstDay + day, kDaySeconds}) ? 0 : length + 1;
    if (length == 7) ++weeks;
  }
  // The first and the last week may be partly outside, and two weeks may be adjacent.
  EXPECT_GE(weeks, kStretches - 2);
  EXPECT_LE(weeks, kStretches + 1);
}

TEST(MakeDay, PutsTheClockBackOnOneDayOfEachStretch) {
  constexpr std::int64_t kStretch = kFirstDay / kHabitDays + 1;
  int repeated = 0;
  for (std::int64_t stretch = kStretch; stretch < kStretch + 6; ++stretch) {
    int days = 0;
    for (std::int64_t number = 0; number < kHabitDays; ++number) {
      const Day day = MakeDay(kSettings, {stretch * kHabitDays + number, kDaySeconds});
      if (!day || day->empty() || day->back().clockSeconds == 0) continue;
      ++days;
      int backwards = 0;
      std::set<std::int64_t> shown;
      for (std::size_t i = 1; i < day->size(); ++i) {
        const ModelSample& sample = (*day)[i];
        const std::int64_t last = (*day)[i - 1].offsetSeconds + (*day)[i - 1].clockSeconds;
        const std::int64_t time = sample.offsetSeconds + sample.clockSeconds;
        EXPECT_GE(time, 0);
        if (time < last) ++backwards;
        if (time != last && !shown.insert(time).second) ++repeated;
      }
      EXPECT_EQ(backwards, 1) << stretch;
    }
    EXPECT_EQ(days, 1) << stretch;
  }
  EXPECT_GT(repeated, 20);
}

TEST(MakeDay, ContainsSamplesAroundAClockChange) {
  for (const std::int64_t length : {kDaySeconds - 3600, kDaySeconds + 3600}) {
    const std::vector<ModelSample> samples = MakeDay(kSettings, {kFirstDay, length}).value();
    const auto awakeIn = [&](std::int64_t hour) {
      return std::any_of(samples.begin(), samples.end(), [hour](const ModelSample& sample) {
        return sample.offsetSeconds / 3600 == hour;
      });
    };
    EXPECT_TRUE(awakeIn(1) && awakeIn(2) && awakeIn(3)) << length;
  }
}

// The value was recorded once. A platform or library with other days fails this test.
TEST(MakeDay, IsTheSameOnEveryPlatform) {
  std::string text;
  ForEachDay([&text](const Day& day) { text += Text(day); });
  EXPECT_EQ(Fingerprint(text), 12'098'103'146'699'214'077ULL);
}

}  // namespace
