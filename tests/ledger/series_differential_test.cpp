// The charts of days and months against those of the plain way: same labels, same bits, same text.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <string>

#include "base/calendar.h"
#include "base/local_calendar.h"
#include "ledger/literal_series.h"
#include "ledger/series.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr std::uint32_t kLedgers = 1000;

/// Ledgers by seed: the walk of a pass back from today, dates of a file, days far in the future,
/// and the first days of the calendar.
class Ledgers {
 public:
  explicit Ledgers(std::uint32_t seed) : random_(seed) {
    now = LocalTimeOf(Instant());
    today = now;
    today.tm_hour = 0;
    today.tm_min = 0;
    today.tm_sec = 0;
    AddWalk();
    AddDatesOfAFile(40, 400);
    AddDatesOfAFile(20, 40);
    AddDatesOfAFile(20, 200'000);
  }

  DateTime now;
  DateTime today;
  PowerLedger ledger;

 private:
  int Between(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random_);
  }

  /// Mostly within a few years, sometimes at either end of the calendar.
  std::int64_t Instant() {
    const int kind = Between(0, 19);
    if (kind == 0) return Between(-2, 400) * kSecondsPerDay + Between(0, 86399);
    if (kind == 1) return 32535215999 - Between(-3, 400) * kSecondsPerDay;
    return 1'700'000'000 + Between(0, 100'000'000);
  }

  float Energy() { return static_cast<float>(Between(-1000, 100'000)) / 7.0F; }

  void AddWalk() {
    DateTime day = today;
    for (int i = Between(0, 211); i > 0 && InstantOf(day) >= 0; --i) {
      if (Between(0, 9) > 0) ledger[day] = Energy();
      day = ShiftKeepingHour(day, -kSecondsPerDay);
    }
  }

  /// Dates up to `mostDays` before or after today, as the ledger reads them.
  void AddDatesOfAFile(int count, int mostDays) {
    for (int i = 0; i < count; ++i) {
      DateTime day{
          0, 0, 0, today.tm_mday + Between(-mostDays, mostDays), today.tm_mon, today.tm_year,
          0, 0, 0};
      if (MakeInstant(day) < 0) continue;
      day.tm_hour = 0;
      if (InstantOf(day) >= 0) ledger[day] = Energy();
    }
  }

  std::mt19937 random_;
};

::testing::AssertionResult AreSame(const Series& actual, const Series& expected) {
  if (actual.size() != expected.size()) return ::testing::AssertionFailure() << actual.size();
  for (std::size_t i = 0; i < actual.size(); ++i) {
    if (actual[i].label == expected[i].label &&
        std::bit_cast<std::uint32_t>(actual[i].energyWh) ==
            std::bit_cast<std::uint32_t>(expected[i].energyWh)) {
      continue;
    }
    return ::testing::AssertionFailure()
           << "entry " << i << ": " << actual[i].label << " " << actual[i].energyWh
           << " instead of " << expected[i].label << " " << expected[i].energyWh;
  }
  return ::testing::AssertionSuccess();
}

}  // namespace

TEST(DaySeries, HasTheEntriesThatLookingUpEachDayFinds) {
  for (std::uint32_t seed = 0; seed < kLedgers; ++seed) {
    const Ledgers l(seed);
    ASSERT_TRUE(AreSame(DaySeries(l.today, l.ledger), LiteralDaySeries(l.today, l.ledger)))
        << "seed " << seed;
  }
}

TEST(MonthSeries, HasTheSumsOfAWalkOverTheWholeLedger) {
  for (std::uint32_t seed = 0; seed < kLedgers; ++seed) {
    const Ledgers l(seed);
    ASSERT_TRUE(AreSame(MonthSeries(l.today, l.now, l.ledger),
                        LiteralMonthSeries(l.today, l.now, l.ledger)))
        << "seed " << seed;
  }
}

TEST(SeriesText, IsTheTextOfADocument) {
  std::mt19937 random(1);
  const std::string labels[] = {"Mon",
                                "",
                                "12:00",
                                "\"\\/\b\f\n\r\t",
                                std::string("a\0b", 3),
                                "\x01\x7F",
                                "\xC3\xA4\xE2\x82\xAC",
                                "\xFF\xC3"};
  for (int i = 0; i < 10'000; ++i) {
    Series series(random() % 13);
    for (SeriesEntry& entry : series) {
      entry.label = labels[random() % std::size(labels)];
      entry.energyWh = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
      if (random() % 4 == 0) entry.energyWh = static_cast<float>(random() % 1000) / 8.0F;
    }
    const char* const key = i % 2 == 0 ? kDayLabelKey : "\"key\"\n";
    ASSERT_EQ(SeriesText(series, key), LiteralSeriesText(series, key)) << i;
  }
}
