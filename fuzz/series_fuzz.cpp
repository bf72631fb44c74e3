// Any ledger in one of many zones: the charts of days and months have the labels, the bits and the
// text of the plain way. The first byte chooses the zone, the next five the time; each day of the
// ledger takes eight.
#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "base/local_calendar.h"
#include "base/zones.h"
#include "fuzz_input.h"
#include "ledger/literal_series.h"
#include "ledger/series.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using Fuzz::Require;

namespace {

constexpr std::uint64_t kLastInstant = 32535215999;

/// Near `today`, as the days of a ledger are, or anywhere.
void AddDay(const DateTime& today, Fuzz::Input& input, PowerLedger& ledger) {
  auto offset = static_cast<std::int32_t>(static_cast<std::uint32_t>(input.Number(4)));
  if ((offset & 1) == 0) offset = static_cast<std::int8_t>(offset >> 8);
  const float energyWh = std::bit_cast<float>(static_cast<std::uint32_t>(input.Number(4)));
  DateTime day{0, 0, 0, today.tm_mday + offset % 400'000, today.tm_mon, today.tm_year, 0, 0, 0};
  if (MakeInstant(day) < 0) return;
  day.tm_hour = 0;
  if (InstantOf(day) >= 0) ledger[day] = energyWh;
}

void RequireSame(const Series& actual, const Series& expected, const char* labelKey) {
  Require(actual.size() == expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    Require(actual[i].label == expected[i].label);
    // The sign and the payload of a sum that is no number depend on the machine.
    const bool areNan = std::isnan(actual[i].energyWh) && std::isnan(expected[i].energyWh);
    Require(areNan || std::bit_cast<std::uint32_t>(actual[i].energyWh) ==
                          std::bit_cast<std::uint32_t>(expected[i].energyWh));
  }
  Require(SeriesText(actual, labelKey) == TestSupport::LiteralSeriesText(expected, labelKey));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  TestSupport::UseZone(TestSupport::kZones[input.Byte() % std::size(TestSupport::kZones)].zone);
  const DateTime now = LocalTimeOf(static_cast<std::int64_t>(input.Number(5) % (kLastInstant + 1)));
  DateTime today = now;
  today.tm_hour = today.tm_min = today.tm_sec = 0;

  PowerLedger ledger;
  while (!input.IsEmpty()) AddDay(today, input, ledger);
  RequireSame(DaySeries(today, ledger), TestSupport::LiteralDaySeries(today, ledger), kDayLabelKey);
  RequireSame(MonthSeries(today, now, ledger), TestSupport::LiteralMonthSeries(today, now, ledger),
              kMonthLabelKey);
  return 0;
}
