#include "ledger/series.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>

#include "base/byte_text.h"
#include "base/calendar.h"
#include "base/date_text.h"
#include "base/json_document.h"
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

template <typename Key>
float EnergyOf(const std::map<Key, float>& energies, const Key& key) {
  const auto entry = energies.find(key);
  return entry != energies.end() ? entry->second : 0.0F;
}

float MonthEnergyWh(const PowerLedger& ledger, int month, int year) {
  float sumWh = 0.0F;
  for (const auto& [day, energyWh] : ledger) {
    if (day.tm_mon + 1 == month && day.tm_year + kFirstYear == year) sumWh += energyWh;
  }
  return sumWh;
}

// Kept on purpose: the day of the month and the daylight flag stay today's, so that a day that the
// month lacks becomes a day of the month after (tests
// MonthSeries.MislabelsAShorterMonthLateInTheMonth and
// MonthSeries.MislabelsWinterMonthsOnTheFirstDayOfASummerMonth).
std::string MonthLabel(DateTime now, int month, int year) {
  now.tm_mon = month - 1;
  now.tm_year = year - kFirstYear;
  now.tm_wday = 1;
  now.tm_sec = 0;
  now.tm_min = 0;
  now.tm_hour = 0;
  MakeInstant(now);
  return FormatDateTime(now, "%b");
}

using Allocator = GenericDocument::AllocatorType;

double ShownEnergy(const SeriesEntry& entry) {
  return static_cast<double>(FiniteOrZero(entry.energyWh));
}

rapidjson::Value RangeOf(const Series& series, Allocator& allocator) {
  double smallest = series.empty() ? 0.0 : ShownEnergy(series.front());
  double largest = smallest;
  for (const SeriesEntry& entry : series) {
    const double energy = ShownEnergy(entry);
    if (energy <= smallest) smallest = energy;
    if (energy >= largest) largest = energy;
  }
  rapidjson::Value range(rapidjson::kArrayType);
  range.PushBack(smallest, allocator);
  range.PushBack(largest, allocator);
  return range;
}

rapidjson::Value EntriesOf(const Series& series, const char* labelKey, Allocator& allocator) {
  rapidjson::Value entries(rapidjson::kArrayType);
  for (const SeriesEntry& entry : series) {
    rapidjson::Value label(entry.label.c_str(),
                           static_cast<rapidjson::SizeType>(entry.label.size()), allocator);
    rapidjson::Value object(rapidjson::kObjectType);
    object.AddMember(rapidjson::StringRef(labelKey), label, allocator);
    object.AddMember("Value", ShownEnergy(entry), allocator);
    entries.PushBack(object, allocator);
  }
  return entries;
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
  for (int i = 0; i < kDaysShown; ++i) {
    series.push_back({FormatDateTime(day, "%a"), EnergyOf(ledger, day)});
    day = ShiftKeepingHour(day, kSecondsPerDay);
  }
  return series;
}

Series MonthSeries(const DateTime& today, const DateTime& now, const PowerLedger& ledger) {
  Series series;
  int month = today.tm_mon + 1;
  int year = today.tm_year + kFirstYear;
  for (int i = 0; i < kMonthsShown; ++i) {
    series.push_back({MonthLabel(now, month, year), MonthEnergyWh(ledger, month, year)});
    if (--month < 1) {
      month = kMonthsPerYear;
      --year;
    }
  }
  std::reverse(series.begin(), series.end());
  return series;
}

std::wstring SeriesText(const Series& series, const char* labelKey) {
  GenericDocument document(rapidjson::kObjectType);
  Allocator& allocator = document.GetAllocator();
  document.AddMember("Range", RangeOf(series, allocator), allocator);
  document.AddMember("Value", EntriesOf(series, labelKey, allocator), allocator);

  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  document.Accept(writer);
  return WidenBytes(buffer.GetString(), buffer.GetString() + buffer.GetSize());
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
