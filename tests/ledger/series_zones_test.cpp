#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/calendar.h"
#include "base/zone_days.h"
#include "ledger/day_energy.h"
#include "ledger/fake_days.h"
#include "ledger/series.h"
#include "ledger/series_parts.h"

// Samples and series around the days on which clocks change and in summer, where a time text is
// read as winter time and its hour is then restored.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

/// The days from 8 before to 4 after a change. The value of the day `plus` is 100 + plus.
template <typename DayAt>
PowerLedger LedgerAround(DayAt dayAt) {
  PowerLedger ledger;
  for (int plus = -8; plus <= 4; ++plus) {
    ledger[Day(DateOf(dayAt(plus)))] = 100.0F + static_cast<float>(plus);
  }
  return ledger;
}

std::string TimeText(int hour, int minute) {
  char text[8];
  std::snprintf(text, sizeof(text), "%02d:%02d", hour, minute);
  return text;
}

/// Samples of 36 watts on a date at the given times, "HH:MM".
std::string SamplesAt(const std::string& date, const std::vector<std::string>& times) {
  std::vector<std::string> elements;
  for (const std::string& time : times) elements.push_back(Sample(date + "T" + time + ":00"));
  return List(elements);
}

std::map<int, float> HoursOf(const std::string& samples) {
  const std::string date = DateOf(Autumn(0));
  return HourlyEnergyWh(Day(date), FakeDays{{date, samples}}.Reader());
}

/// The energy of `date`, with samples around the midnight between `before` and `date`.
float LinkEnergyWh(const std::string& before, const std::string& date) {
  FakeDays days{{before, SamplesAt(before, {"12:00", "23:58"})},
                {date, SamplesAt(date, {"00:03", "12:00"})}};
  return DayEnergyWh(Day(date), days.Summaries());
}

}  // namespace

TEST(DaySeries, RepeatsTheDayOf25Hours) {
  const Series series =
      DaySeries(TodayAt(Autumn(3)), LedgerAround([](int d) { return Autumn(d); }));
  EXPECT_EQ(LabelsOf(series), (Labels{"Wed", "Thu", "Fri", "Sat", "Sun", "Sun", "Mon"}));
  // The key of the second Sunday is one hour later and not in the ledger.
  EXPECT_EQ(ValuesOf(series), (Values{96, 97, 98, 99, 100, 0, 101}));
}

TEST(DaySeries, BeginsADayEarlyAcrossTheSpringChange) {
  const Series series =
      DaySeries(TodayAt(Spring(3)), LedgerAround([](int d) { return Spring(d); }));
  EXPECT_EQ(LabelsOf(series), (Labels{"Tue", "Wed", "Thu", "Fri", "Sat", "Sun", "Mon"}));
  EXPECT_EQ(ValuesOf(series), (Values{95, 96, 97, 98, 99, 100, 101}));
}

TEST(MonthSeries, MislabelsWinterMonthsOnTheFirstDayOfASummerMonth) {
  // The first of February and of March with the summer time flag are one hour before the month.
  const DateTime now = LocalIn2025(7, 1, 12);
  const PowerLedger ledger{{Day("2025-02-10"), 2.0F}, {Day("2025-03-20"), 3.0F}};
  const Series series = MonthSeries(TodayAt(now), now, ledger);
  EXPECT_EQ(LabelsOf(series), (Labels{"Jan", "Feb", "Apr", "May", "Jun", "Jul"}));
  EXPECT_EQ(ValuesOf(series), (Values{2, 3, 0, 0, 0, 0}));
}

TEST(MonthSeries, LabelsMonthsOfTheSameSeasonCorrectly) {
  const DateTime now = LocalIn2025(1, 1, 12);
  EXPECT_EQ(LabelsOf(MonthSeries(TodayAt(now), now, {})),
            (Labels{"Aug", "Sep", "Oct", "Nov", "Dec", "Jan"}));
}

TEST(ShiftKeepingHour, SkipsTheSpringChangeDayInTheHourAfterItsMidnight) {
  const DateTime now = Spring(1, 0, 10);
  EXPECT_EQ(DateOf(ShiftKeepingHour(now, -kSecondsPerDay)), DateOf(Spring(-1)));
  const DateTime later = Spring(1, 1, 10);
  EXPECT_EQ(DateOf(ShiftKeepingHour(later, -kSecondsPerDay)), DateOf(Spring(0)));
}

TEST(HourlyEnergy, AddsUpBothPassagesOfTheRepeatedHour) {
  // A sample of the same hour does not close the hour, so both passages go into one sum. The step
  // back in time between them books nothing. Booked: 45 to 50, 50 to 55, 0 to 5, 5 to 10, 10 to 15.
  const int hour = ChangesOfThisZone().repeatedHour;
  std::vector<std::string> times;
  for (const int minute : {40, 45, 50, 55, 0, 5, 10, 15}) times.push_back(TimeText(hour, minute));
  times.push_back(TimeText(hour + 1, 0));
  times.push_back(TimeText(hour + 1, 5));
  const auto hours = HoursOf(SamplesAt(DateOf(Autumn(0)), times));
  EXPECT_EQ(hours, (std::map<int, float>{{hour, 15.0F / 0.88F}, {hour + 1, 3.0F / 0.88F}}));
}

TEST(HourlyEnergy, DropsTheSecondPassageOfAnHourAfterAnotherHour) {
  const int hour = ChangesOfThisZone().repeatedHour;
  const std::vector<std::string> times{
      TimeText(hour, 45), TimeText(hour, 50), TimeText(hour, 55), TimeText(hour + 1, 0),
      TimeText(hour, 50), TimeText(hour, 55), TimeText(hour, 58)};
  const auto hours = HoursOf(SamplesAt(DateOf(Autumn(0)), times));
  EXPECT_EQ(hours, (std::map<int, float>{{hour, 6.0F / 0.88F}, {hour + 1, 0.0F}}));
}

TEST(HourlyEnergy, IncludesTheHourBeforeTheRepeatedOneWithZero) {
  // The interval into the repeated hour is a gap, since its times are read as summer and as winter
  // time.
  const int hour = ChangesOfThisZone().repeatedHour;
  const auto samples = SamplesAt(DateOf(Autumn(0)), {TimeText(hour - 1, 50), TimeText(hour - 1, 55),
                                                     TimeText(hour, 0), TimeText(hour, 5)});
  EXPECT_EQ(HoursOf(samples), (std::map<int, float>{{hour - 1, 0.0F}, {hour, 3.0F / 0.88F}}));
}

TEST(DayEnergy, BooksTheLinkAcrossMidnightInWinterButNotInSummer) {
  EXPECT_EQ(LinkEnergyWh("2025-01-14", "2025-01-15"), 3.0F / 0.88F);
  // The last hour of a summer day is read one day later.
  EXPECT_EQ(LinkEnergyWh("2025-07-14", "2025-07-15"), 0.0F);
}

TEST(DayEnergy, BooksNoSummerIntervalIntoTheLastHour) {
  const auto energyOf = [](const std::string& date) {
    FakeDays days{{date, SamplesAt(date, {"22:00", "22:58", "23:03", "23:08"})}};
    return DayEnergyWh(Day(date), days.Summaries());
  };
  EXPECT_EQ(energyOf("2025-01-15"), 6.0F / 0.88F);
  EXPECT_EQ(energyOf("2025-07-15"), 3.0F / 0.88F);
}

TEST(DayEnergy, TakesTheDayBeforeTheSpringChangeAsTheNeighbourAfterIt) {
  // One step back from that midnight reaches the day before the change.
  const std::string date = DateOf(Spring(1));
  FakeDays days{{date, SamplesAt(date, {"10:00", "10:05"})}};
  static_cast<void>(DayEnergyWh(Day(date), days.Summaries()));
  EXPECT_EQ(days.ReadDates(),
            (std::vector<std::string>{date, DateOf(Spring(-1)), DateOf(Spring(2))}));
}
