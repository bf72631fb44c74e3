#include "ledger/literal_series.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>

#include "base/byte_text.h"
#include "base/date_text.h"
#include "base/json_document.h"
#include "base/local_calendar.h"
#include "ledger/sample_energy.h"

namespace TestSupport {

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

constexpr int kDaysShown = 7;
constexpr int kMonthsShown = 6;
constexpr int kMonthsPerYear = 12;
constexpr int kFirstYear = 1900;

float MonthEnergyWh(const PowerLedger& ledger, int month, int year) {
  float sumWh = 0.0F;
  for (const auto& [day, energyWh] : ledger) {
    if (day.tm_mon + 1 == month && day.tm_year + kFirstYear == year) sumWh += energyWh;
  }
  return sumWh;
}

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

Series LiteralDaySeries(const DateTime& today, const PowerLedger& ledger) {
  Series series;
  DateTime day = ShiftKeepingHour(today, -kDaysShown * kSecondsPerDay);
  for (int i = 0; i < kDaysShown; ++i) {
    const auto entry = ledger.find(day);
    series.push_back({FormatDateTime(day, "%a"), entry != ledger.end() ? entry->second : 0.0F});
    day = ShiftKeepingHour(day, kSecondsPerDay);
  }
  return series;
}

Series LiteralMonthSeries(const DateTime& today, const DateTime& now, const PowerLedger& ledger) {
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

std::wstring LiteralSeriesText(const Series& series, const char* labelKey) {
  GenericDocument document(rapidjson::kObjectType);
  Allocator& allocator = document.GetAllocator();
  document.AddMember("Range", RangeOf(series, allocator), allocator);
  document.AddMember("Value", EntriesOf(series, labelKey, allocator), allocator);

  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  document.Accept(writer);
  return WidenBytes(buffer.GetString(), buffer.GetString() + buffer.GetSize());
}

}  // namespace TestSupport
