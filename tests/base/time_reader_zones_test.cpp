#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "base/literal_times.h"
#include "base/zones.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::IsSame;
using TestSupport::LiteralTime;
using TestSupport::SampleTimeText;
using TestSupport::ZoneYears;

namespace {

/// The date and time of day of a count of seconds that has 86400 of them in each day.
DateTime Civil(std::int64_t seconds) {
  const time_t count = seconds;
  std::tm fields{};
  gmtime_r(&count, &fields);
  return FromTm(fields);
}

/// The count of seconds of a date and time of day.
std::int64_t Seconds(const DateTime& civil) {
  std::tm fields = ToTm(civil);
  return timegm(&fields);
}

std::int64_t FirstSecondOf(int year) { return Seconds({.tm_mday = 1, .tm_year = year - 1900}); }

/// Seconds from UTC to local time, and the daylight flag.
std::pair<std::int64_t, int> OffsetAt(std::int64_t instant) {
  const DateTime local = LocalTimeOf(instant);
  return {Seconds(local) - instant, local.tm_isdst};
}

/// The instants from which another offset or flag holds.
std::vector<std::int64_t> ChangesOf(const ZoneYears& years) {
  std::vector<std::int64_t> changes;
  const std::int64_t end = FirstSecondOf(years.lastYear + 1);
  for (std::int64_t instant = FirstSecondOf(years.firstYear); instant < end; instant += 86400) {
    const auto before = OffsetAt(instant);
    if (before == OffsetAt(instant + 86400)) continue;
    std::int64_t low = instant;
    std::int64_t high = instant + 86400;
    while (high - low > 1) {
      const std::int64_t middle = low + (high - low) / 2;
      (OffsetAt(middle) == before ? low : high) = middle;
    }
    changes.push_back(high);
  }
  return changes;
}

/// The times from `first` to `last`, `stride` seconds apart.
void AddTexts(std::vector<std::string>& texts, std::int64_t first, std::int64_t last,
              std::int64_t stride) {
  for (std::int64_t seconds = first; seconds <= last; seconds += stride) {
    texts.push_back(SampleTimeText(Civil(seconds)));
  }
}

/// The dates from `first` to before `end`, and two that no month has.
void AddDates(std::vector<std::string>& texts, std::int64_t first, std::int64_t end) {
  for (std::int64_t seconds = first; seconds < end; seconds += kSecondsPerDay) {
    const DateTime date = Civil(seconds);
    texts.push_back(SampleTimeText(date).substr(0, 10));
    if (date.tm_mon == 1 && date.tm_mday == 28) {
      for (const char* day : {"30", "31"}) texts.push_back(texts.back().substr(0, 8) + day);
    }
  }
}

class TimeReaderInZone : public testing::TestWithParam<ZoneYears> {
 protected:
  void SetUp() override { TestSupport::UseZone(GetParam().zone); }
  void TearDown() override { TestSupport::UseZone("UTC0"); }

  void ExpectLiteralResults(const std::vector<std::string>& texts,
                            const char* format = kSampleTimeFormat) {
    TimeReader reader(format);
    for (const std::string& text : texts) {
      const LocalTime time = reader.Read(text.c_str());
      ASSERT_TRUE(IsLiteralResult(text, format, time))
          << text << "\n  read:    " << TestSupport::Text(time)
          << "\n  literal: " << TestSupport::Text(LiteralTime(text.c_str(), format));
    }
    count_ += texts.size();
    RecordProperty("times", static_cast<int>(count_));
  }

 private:
  bool IsLiteralResult(const std::string& text, const char* format, const LocalTime& time) {
    if (IsSame(time, LiteralTime(text.c_str(), format))) return true;
    return GetParam().skipsADay &&
           TestSupport::IsLiteralAfterAnotherCall(time, text.c_str(), format);
  }

  std::size_t count_ = 0;
};

}  // namespace

TEST_P(TimeReaderInZone, ReadsEveryHourLikeTheLiteralAlgorithm) {
  std::vector<std::string> texts;
  AddTexts(texts, FirstSecondOf(GetParam().firstYear), FirstSecondOf(GetParam().lastYear + 1),
           3600 - 1);
  ExpectLiteralResults(texts);
  std::shuffle(texts.begin(), texts.end(), std::mt19937(7));
  texts.resize(texts.size() / 4);
  ExpectLiteralResults(texts);
}

TEST_P(TimeReaderInZone, ReadsEverySecondAroundAClockChangeLikeTheLiteralAlgorithm) {
  for (const std::int64_t change : ChangesOf(GetParam())) {
    std::vector<std::string> texts;
    const std::int64_t before = change + OffsetAt(change - 1).first;
    const std::int64_t after = change + OffsetAt(change).first;
    AddTexts(texts, std::min(before, after) - 1800, std::max(before, after) + 1800, 1);
    ExpectLiteralResults(texts);
  }
}

TEST_P(TimeReaderInZone, ReadsEveryDateLikeTheLiteralAlgorithm) {
  std::vector<std::string> dates;
  for (const int firstYear : {1970, GetParam().firstYear - 1, 2030, 2998}) {
    AddDates(dates, FirstSecondOf(firstYear), FirstSecondOf(firstYear + 4));
  }
  ExpectLiteralResults(dates, kDateFormat);
  std::reverse(dates.begin(), dates.end());
  ExpectLiteralResults(dates, kDateFormat);
  std::shuffle(dates.begin(), dates.end(), std::mt19937(7));
  dates.resize(dates.size() / 4);
  ExpectLiteralResults(dates, kDateFormat);
}

TEST_P(TimeReaderInZone, ReadsDatesOfAnyDistanceLikeTheLiteralAlgorithm) {
  std::mt19937 random(7);
  std::vector<std::string> dates;
  std::int64_t seconds = FirstSecondOf(GetParam().firstYear);
  while (dates.size() < 4000) {
    const int steps = static_cast<int>(random() % 40);
    const auto longest = static_cast<int>(1 + random() % 12);
    for (int i = 0; i < steps; ++i) {
      seconds += (static_cast<int>(random() % static_cast<unsigned>(2 * longest + 1)) - longest) *
                 kSecondsPerDay;
      AddDates(dates, seconds, seconds + 1);
    }
    // Most of the dates lie within the years of the zone.
    const int years = GetParam().lastYear - GetParam().firstYear + 1;
    seconds =
        FirstSecondOf(GetParam().firstYear) +
        static_cast<std::int64_t>(random() % static_cast<unsigned>(years * 365)) * kSecondsPerDay;
  }
  ExpectLiteralResults(dates, kDateFormat);
}

INSTANTIATE_TEST_SUITE_P(Zones, TimeReaderInZone, testing::ValuesIn(TestSupport::kZones),
                         TestSupport::NameOfZone());
