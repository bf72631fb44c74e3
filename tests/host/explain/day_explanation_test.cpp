#include "explain/day_explanation.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ledger/fake_days.h"
#include "ledger/sample_lists.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace WattleafHost;
using TestSupport::Day;
using TestSupport::FakeDays;
using TestSupport::List;
using TestSupport::Sample;

namespace {

using Kind = ExplainedInterval::Kind;

constexpr char kDate[] = "2024-02-06";
constexpr char kDateBefore[] = "2024-02-05";
constexpr char kDateAfter[] = "2024-02-07";

std::string At(const std::string& time, const std::string& power = "36",
               const std::string& type = "PCM_SENSOR") {
  return Sample(std::string(kDate) + "T" + time, power, type);
}

std::vector<Booking> BookingsOf(const std::vector<ExplainedInterval>& intervals) {
  std::vector<Booking> bookings;
  for (const ExplainedInterval& interval : intervals) bookings.push_back(interval.booking);
  return bookings;
}

DayExplanation Explain(FakeDays days) { return ExplainDay(Day(kDate), days.Reader()); }
HourExplanation ExplainHoursOf(FakeDays days) { return ExplainHours(Day(kDate), days.Reader()); }

std::uint32_t Bits(float value) { return std::bit_cast<std::uint32_t>(value); }

std::map<int, std::uint32_t> Bits(const std::map<int, float>& hours) {
  std::map<int, std::uint32_t> bits;
  for (const auto& [hour, energyWh] : hours) bits[hour] = Bits(energyWh);
  return bits;
}

}  // namespace

TEST(DayExplanation, HasTheBitsOfTheLibrary) {
  constexpr std::uint32_t kSeeds = 1200;
  constexpr const char* kDates[][3] = {{"2025-03-29", "2025-03-30", "2025-03-31"},
                                       {"2025-10-25", "2025-10-26", "2025-10-27"},
                                       {"2025-07-14", "2025-07-15", "2025-07-16"},
                                       {"2024-12-31", "2025-01-01", "2025-01-02"}};
  std::uint32_t daysWithEnergy = 0;
  std::map<Booking, int> seen;
  for (std::uint32_t seed = 0; seed < kSeeds; ++seed) {
    TestSupport::SampleListGenerator generator(seed + 50'000);
    const auto& dates = kDates[seed % 4];
    const std::string before = generator.ListOf(dates[0]);
    const std::string list = generator.ListOf(dates[1]);
    const std::string after = generator.ListOf(dates[2]);
    FakeDays library{{dates[0], before}, {dates[1], list}, {dates[2], after}};
    FakeDays explained = library;
    const DateTime day = Day(dates[1]);

    const float energyWh = DayEnergyWh(day, library.Summaries());
    const auto hours = HourlyEnergyWh(day, library.Reader());
    const DayExplanation explanation = ExplainDay(day, explained.Reader());
    const HourExplanation hourExplanation = ExplainHours(day, explained.Reader());

    ASSERT_EQ(Bits(explanation.energyWh), Bits(energyWh)) << "seed " << seed << "\n" << list;
    ASSERT_EQ(Bits(HoursOf(hourExplanation)), Bits(hours)) << "seed " << seed << "\n" << list;
    ASSERT_EQ(explained.ReadDates(), library.ReadDates()) << "seed " << seed;
    float sumWh = 0.0F;
    for (const ExplainedInterval& interval : explanation.intervals) {
      if (interval.booking != Booking::kBooked) {
        ASSERT_EQ(interval.energyWh, 0.0F) << "seed " << seed;
      }
      sumWh += interval.energyWh;
      ASSERT_EQ(Bits(interval.sumWh), Bits(sumWh)) << "seed " << seed;
      ++seen[interval.booking];
    }
    daysWithEnergy += energyWh != 0.0F ? 1 : 0;
  }
  EXPECT_GT(daysWithEnergy, kSeeds / 2);
  EXPECT_EQ(seen.size(), 9U) << "each reason of a day occurs";
}

TEST(DayExplanation, NamesEachIntervalOfAListInTheOrderOfTheArithmetic) {
  const DayExplanation day =
      Explain({{kDateBefore, List({Sample("2024-02-05T23:58:00", "18")})},
               {kDate, List({At("00:02:00"), At("00:07:00"), At("00:12:00", "72"),
                             At("00:17:00", "36", "PCM_SCREEN"), At("00:22:00"), At("00:32:01"),
                             At("00:32:01"), At("00:42:01")})},
               {kDateAfter, List({Sample("2024-02-07T00:00:00", "36")})}});
  ASSERT_TRUE(day.hasList);
  EXPECT_EQ(day.samples.size(), 8U);
  EXPECT_EQ(BookingsOf(day.intervals),
            (std::vector<Booking>{Booking::kBooked, Booking::kFirstInterval, Booking::kBooked,
                                  Booking::kBooked, Booking::kOtherType, Booking::kGap,
                                  Booking::kNotForward, Booking::kBooked, Booking::kGap}));
  // 240 s at 18 W, 300 s at 36 W, 300 s at 72 W and 600 s at 36 W.
  const ExplainedInterval& link = day.intervals[0];
  EXPECT_EQ(link.kind, Kind::kLinkToDayBefore);
  EXPECT_EQ(link.from, "2024-02-05T23:58:00");
  EXPECT_EQ(link.to, "2024-02-06T00:02:00");
  EXPECT_EQ(link.seconds, 240);
  EXPECT_EQ(link.watts, 18.0F);
  EXPECT_EQ(link.energyWh, 240.0F * 18.0F / 3600.0F);
  EXPECT_EQ(day.intervals[2].energyWh, 3.0F);
  EXPECT_EQ(day.intervals[3].energyWh, 6.0F);
  EXPECT_EQ(day.intervals[5].seconds, 601);
  EXPECT_EQ(day.intervals[7].sumWh, day.sumWh);
  EXPECT_EQ(day.intervals[8].kind, Kind::kLinkToDayAfter);
  EXPECT_NEAR(day.sumWh, 1.2F + 3.0F + 6.0F + 6.0F, 1e-5F);
  EXPECT_NEAR(day.energyWh, 16.2F / 0.88F, 1e-4F);
}

TEST(DayExplanation, UsesThePowerOfTheLaterSampleForTheLinkToTheDayAfter) {
  const DayExplanation day = Explain({{kDate, List({At("09:00:00"), At("23:59:00", "1")})},
                                      {kDateAfter, List({Sample("2024-02-07T00:01:00", "30")})}});
  ASSERT_EQ(day.intervals.size(), 3U);
  EXPECT_EQ(day.intervals[2].booking, Booking::kBooked);
  EXPECT_EQ(day.intervals[2].watts, 30.0F);
  EXPECT_EQ(day.energyWh, 1.0F / 0.88F);  // 120 s at 30 W
}

TEST(DayExplanation, NamesLinksToDaysWithoutSamples) {
  const DayExplanation day = Explain({{kDate, List({At("09:00:00"), At("09:05:00")})}});
  EXPECT_EQ(BookingsOf(day.intervals),
            (std::vector<Booking>{Booking::kNoNeighbour, Booking::kFirstInterval,
                                  Booking::kNoNeighbour}));
  EXPECT_EQ(day.intervals[0].from, "");
  EXPECT_EQ(day.intervals[0].to, "2024-02-06T09:00:00");
  EXPECT_EQ(day.intervals[2].from, "2024-02-06T09:05:00");
}

TEST(DayExplanation, NamesLinksOfSamplesThatDoNotCount) {
  const DayExplanation day = Explain(
      {{kDate, List({At("09:00:00", "36", "PCM_SCREEN"), At("09:05:00", "36", "PCM_SCREEN")})}});
  EXPECT_EQ(
      BookingsOf(day.intervals),
      (std::vector<Booking>{Booking::kOtherType, Booking::kFirstInterval, Booking::kOtherType}));
  EXPECT_FALSE(day.samples[0].isCounted);
  EXPECT_EQ(day.samples[0].type, "PCM_SCREEN");
}

TEST(DayExplanation, OfASingleSampleHasOnlyItsLinkToTheDayBefore) {
  const DayExplanation day = Explain({{kDateBefore, List({Sample("2024-02-05T23:59:00", "36")})},
                                      {kDate, List({At("00:04:00")})},
                                      {kDateAfter, List({Sample("2024-02-07T00:00:00", "36")})}});
  EXPECT_EQ(BookingsOf(day.intervals),
            (std::vector<Booking>{Booking::kBooked, Booking::kSingleSample}));
  EXPECT_EQ(day.energyWh, 3.0F / 0.88F);
}

TEST(DayExplanation, NamesSamplesWithoutATimeAndEnergiesBeyondAFloat) {
  const DayExplanation day =
      Explain({{kDate, List({At("09:00:00"), R"({"TelemetryType":"PCM_SENSOR","Power":1})",
                             At("09:05:00", "3e38"), At("09:10:00")})}});
  EXPECT_EQ(BookingsOf(day.intervals),
            (std::vector<Booking>{Booking::kNoNeighbour, Booking::kFirstInterval, Booking::kNoTime,
                                  Booking::kTooLarge, Booking::kNoNeighbour}));
  EXPECT_EQ(day.intervals[2].from, "");
  EXPECT_EQ(day.intervals[2].seconds, 0);
}

// As docs/support.md says: the clocks of both zones of this program are changed in summer.
TEST(DayExplanation, ShowsAGapOfADayBefore23HoursInSummerTime) {
  FakeDays days{
      {"2024-07-01", List({Sample("2024-07-01T22:50:00"), Sample("2024-07-01T22:59:00"),
                           Sample("2024-07-01T23:00:00"), Sample("2024-07-01T23:01:00")})}};
  const DayExplanation day = ExplainDay(Day("2024-07-01"), days.Reader());
  EXPECT_EQ(BookingsOf(day.intervals),
            (std::vector<Booking>{Booking::kNoNeighbour, Booking::kFirstInterval, Booking::kGap,
                                  Booking::kBooked, Booking::kNoNeighbour}));
  EXPECT_EQ(day.intervals[2].seconds, 86'460);
}

TEST(DayExplanation, OfADayWithoutAListIsEmpty) {
  EXPECT_FALSE(Explain({{kDate, "{}"}}).hasList);
  const DayExplanation empty = Explain({{kDate, "[]"}});
  EXPECT_TRUE(empty.hasList);
  EXPECT_TRUE(empty.intervals.empty());
  EXPECT_EQ(empty.energyWh, 0.0F);
}

TEST(HourExplanation, EndsAnHourWhereTheNextSampleIsOfAnotherHour) {
  const HourExplanation hours =
      ExplainHoursOf({{kDate, List({At("09:40:00"), At("09:50:00"), At("09:55:00"), At("10:00:00"),
                                    At("10:05:00"), At("10:10:00")})}});
  EXPECT_EQ(BookingsOf(hours.intervals),
            (std::vector<Booking>{Booking::kFirstInterval, Booking::kBooked, Booking::kBooked,
                                  Booking::kBooked, Booking::kBooked, Booking::kEndOfList}));
  ASSERT_EQ(hours.sums.size(), 2U);
  EXPECT_EQ(hours.sums[0].hour, 9);
  EXPECT_EQ(hours.sums[0].firstInterval, 0U);
  EXPECT_EQ(hours.sums[0].endInterval, 3U);
  EXPECT_EQ(hours.sums[0].sumWh, 6.0F);
  EXPECT_EQ(hours.sums[0].energyWh, 6.0F / 0.88F);
  EXPECT_EQ(hours.sums[1].hour, 10);
  EXPECT_EQ(hours.sums[1].firstInterval, 3U);
  EXPECT_EQ(hours.sums[1].endInterval, 5U);
  EXPECT_EQ(hours.intervals[2].sumWh, 6.0F);
  EXPECT_EQ(hours.intervals[3].sumWh, 3.0F);
  EXPECT_FALSE(hours.unendedFrom.has_value());
}

TEST(HourExplanation, CarriesAnHourThatEndsOnAnotherTypeIntoTheNext) {
  const HourExplanation hours = ExplainHoursOf(
      {{kDate, List({At("09:40:00"), At("09:50:00"), At("09:55:00", "36", "PCM_SCREEN"),
                     At("10:05:00"), At("10:10:00"), At("10:15:00")})}});
  ASSERT_EQ(hours.sums.size(), 1U);
  EXPECT_EQ(hours.sums[0].hour, 10);
  EXPECT_EQ(hours.sums[0].firstInterval, 0U);
  EXPECT_EQ(hours.sums[0].sumWh, 9.0F);
}

TEST(HourExplanation, NamesTheFirstIntervalOfASumThatNoHourEnds) {
  const HourExplanation hours =
      ExplainHoursOf({{kDate, List({At("09:00:00"), At("09:50:00"), At("10:00:00"), At("10:05:00"),
                                    At("10:10:00", "36", "PCM_SCREEN"), At("10:15:00")})}});
  ASSERT_EQ(hours.sums.size(), 1U);
  EXPECT_EQ(hours.sums[0].hour, 9);
  EXPECT_EQ(hours.unendedFrom, std::optional<std::size_t>(2));
}

TEST(HourExplanation, DropsTheSecondSumOfAnHour) {
  const HourExplanation hours =
      ExplainHoursOf({{kDate, List({At("09:00:00"), At("09:50:00"), At("10:00:00"), At("10:05:00"),
                                    At("09:55:00", "72"), At("10:00:00"), At("10:05:00")})}});
  ASSERT_EQ(hours.sums.size(), 4U);
  EXPECT_EQ(hours.sums[2].hour, 9);
  EXPECT_TRUE(hours.sums[2].isDropped);
  EXPECT_EQ(hours.sums[2].sumWh, 6.0F);
  EXPECT_FALSE(hours.sums[0].isDropped);
  EXPECT_EQ(HoursOf(hours).at(9), 6.0F / 0.88F);
}

TEST(LargestGapSeconds, IsTheLongestTimeBetweenNeighboursThatHaveTimes) {
  const DayExplanation day =
      Explain({{kDate, List({At("09:00:00"), At("09:15:00"), R"({"TelemetryType":"PCM_SENSOR"})",
                             At("15:00:00"), At("15:10:00")})}});
  EXPECT_EQ(LargestGapSeconds(day.samples), 900);
  EXPECT_EQ(LargestGapSeconds({}), 0);
}

TEST(BookingText, SaysWhyAnIntervalIsNotBooked) {
  EXPECT_STREQ(BookingText(Booking::kBooked), "");
  EXPECT_STREQ(BookingText(Booking::kGap), "a gap of more than 600 seconds");
  EXPECT_STREQ(BookingText(Booking::kNoNeighbour), "the neighbouring day has no readable sample");
}
