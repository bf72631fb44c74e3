#include "ledger/series.h"

#include <array>
#include <cstddef>

#include "base/byte_text.h"
#include "base/calendar.h"
#include "base/date_text.h"
#include "base/json_memory.h"
#include "base/local_calendar.h"
#include "ledger/sample_energy.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr int kHoursShown = 12;
constexpr int kHoursPerDay = 24;
constexpr int kDaysShown = 7;
constexpr int kMonthsShown = 6;
constexpr int kMonthsPerYear = 12;
constexpr int kFirstYear = 1900;

float EnergyOf(const std::map<int, float>& hours, int hour) {
  const auto entry = hours.find(hour);
  return entry != hours.end() ? entry->second : 0.0F;
}

/// The entries of a ledger on days in ascending order. Looks a day up once and then walks: the
/// instant of each key that is compared costs more than the rest.
class AscendingDays {
 public:
  AscendingDays(const PowerLedger& ledger, const DateTime& first)
      : entry_(ledger.lower_bound(first)), end_(ledger.end()) {}

  /// The energy of a day that is not before the last one asked for; 0.0 if it has no entry.
  [[nodiscard]] float EnergyWh(const DateTime& day) {
    const std::int64_t instant = InstantOf(day);
    for (; entry_ != end_; ++entry_) {
      const std::int64_t entryInstant = InstantOf(entry_->first);
      if (entryInstant == instant) return entry_->second;
      if (entryInstant > instant) break;
    }
    return 0.0F;
  }

 private:
  PowerLedger::const_iterator entry_;
  PowerLedger::const_iterator end_;
};

/// A month of a year, counted as people do.
struct Month {
  int month = 0;
  int year = 0;

  [[nodiscard]] bool Contains(const DateTime& day) const {
    return day.tm_mon + 1 == month && day.tm_year + kFirstYear == year;
  }
};

using ShownMonths = std::array<Month, kMonthsShown>;

/// The months that are shown, the oldest first.
ShownMonths MonthsUntil(const DateTime& today) {
  ShownMonths months;
  Month month{today.tm_mon + 1, today.tm_year + kFirstYear};
  for (int i = kMonthsShown; i-- > 0;) {
    months[static_cast<std::size_t>(i)] = month;
    if (--month.month < 1) month = {kMonthsPerYear, month.year - 1};
  }
  return months;
}

int CountMonths(int month, int year) { return year * kMonthsPerYear + month; }

/// The energy of each month. Looks only at the entries up to the month after them, since a ledger
/// may hold all days up to the end of the calendar. Entries are in the order of their instants,
/// which are at most a day or two from their dates. Few entries are older than the months, so the
/// first of them is not searched for: the search would touch more memory than the walk.
std::array<float, kMonthsShown> MonthEnergiesWh(const PowerLedger& ledger,
                                                const ShownMonths& months) {
  std::array<float, kMonthsShown> sumsWh{};
  const int firstCount = CountMonths(months.front().month, months.front().year);
  const int lastCount = CountMonths(months.back().month, months.back().year);
  for (const auto& [day, energyWh] : ledger) {
    const int count = CountMonths(day.tm_mon + 1, day.tm_year + kFirstYear);
    if (count < firstCount) continue;
    if (count > lastCount + 1) break;
    for (std::size_t i = 0; i < months.size(); ++i) {
      if (months[i].Contains(day)) sumsWh[i] += energyWh;
    }
  }
  return sumsWh;
}

// Kept on purpose: the day of the month and the daylight flag stay today's, so that a day that the
// month lacks becomes a day of the month after (tests
// MonthSeries.MislabelsAShorterMonthLateInTheMonth and
// MonthSeries.MislabelsWinterMonthsOnTheFirstDayOfASummerMonth).
std::string MonthLabel(DateTime now, const Month& month) {
  now.tm_mon = month.month - 1;
  now.tm_year = month.year - kFirstYear;
  now.tm_wday = 1;
  now.tm_sec = 0;
  now.tm_min = 0;
  now.tm_hour = 0;
  MakeInstant(now);
  return FormatDateTime(now, "%b");
}

using Writer = JsonWriterInto<JsonBuffer>;

double ShownEnergy(const SeriesEntry& entry) {
  return static_cast<double>(FiniteOrZero(entry.energyWh));
}

void WriteRange(const Series& series, Writer& writer) {
  double smallest = series.empty() ? 0.0 : ShownEnergy(series.front());
  double largest = smallest;
  for (const SeriesEntry& entry : series) {
    const double energy = ShownEnergy(entry);
    if (energy <= smallest) smallest = energy;
    if (energy >= largest) largest = energy;
  }
  writer.StartArray();
  writer.Double(smallest);
  writer.Double(largest);
  writer.EndArray();
}

void WriteEntries(const Series& series, const char* labelKey, Writer& writer) {
  writer.StartArray();
  for (const SeriesEntry& entry : series) {
    writer.StartObject();
    writer.Key(labelKey);
    writer.String(entry.label.data(), static_cast<rapidjson::SizeType>(entry.label.size()));
    writer.Key("Value");
    writer.Double(ShownEnergy(entry));
    writer.EndObject();
  }
  writer.EndArray();
}

}  // namespace

Series HourSeries(int hourNow, const std::map<int, float>& yesterday,
                  const std::map<int, float>& today) {
  Series series;
  for (int hour = hourNow - kHoursShown; hour < hourNow; ++hour) {
    const bool isToday = hour >= 0;
    const int shown = isToday ? hour : hour + kHoursPerDay;
    series.push_back({std::to_string(shown) + ":00", EnergyOf(isToday ? today : yesterday, shown)});
  }
  return series;
}

Series DaySeries(const DateTime& today, const PowerLedger& ledger) {
  Series series;
  DateTime day = ShiftKeepingHour(today, -kDaysShown * kSecondsPerDay);
  AscendingDays days(ledger, day);
  for (int i = 0; i < kDaysShown; ++i) {
    series.push_back({FormatDateTime(day, "%a"), days.EnergyWh(day)});
    day = ShiftKeepingHour(day, kSecondsPerDay);
  }
  return series;
}

Series MonthSeries(const DateTime& today, const DateTime& now, const PowerLedger& ledger) {
  const ShownMonths months = MonthsUntil(today);
  const auto energiesWh = MonthEnergiesWh(ledger, months);
  Series series;
  for (std::size_t i = 0; i < months.size(); ++i) {
    series.push_back({MonthLabel(now, months[i]), energiesWh[i]});
  }
  return series;
}

std::wstring SeriesText(const Series& series, const char* labelKey) {
  JsonBuffer buffer;
  Writer writer(buffer);
  writer.StartObject();
  writer.Key("Range");
  WriteRange(series, writer);
  writer.Key("Value");
  WriteEntries(series, labelKey, writer);
  writer.EndObject();
  return WidenBytes(buffer.GetString(), buffer.GetString() + buffer.GetSize());
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
