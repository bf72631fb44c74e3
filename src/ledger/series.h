#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/calendar.h"
#include "ledger/power_ledger.h"

// The three charts: energy by hour, by day and by month, the oldest entry first, and their form as
// JSON. Labels follow the locale of the process's C library; here they are those of the default
// locale. A missing hour, day or month counts as 0.0.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// One value of a chart, in watt-hours.
struct SeriesEntry {
  std::string label;
  float energyWh = 0.0F;
};
using Series = std::vector<SeriesEntry>;

/// The twelve full hours before `hourNow` (0 to 23), labelled "0:00" to "23:00", from the energy by
/// hour of both days.
[[nodiscard]] Series HourSeries(int hourNow, const std::map<int, float>& yesterday,
                                const std::map<int, float>& today);

/// The seven days before `today`, labelled "Mon" to "Sun". Today itself is not shown.
[[nodiscard]] Series DaySeries(const DateTime& today, const PowerLedger& ledger);

/// Six months, the current one last, labelled "Jan" to "Dec". `now` is the current local time; the
/// labels are made from it.
[[nodiscard]] Series MonthSeries(const DateTime& today, const DateTime& now,
                                 const PowerLedger& ledger);

/// The member of an entry that holds its label, for each series.
inline constexpr char kHourLabelKey[] = "Time";
inline constexpr char kDayLabelKey[] = "Day";
inline constexpr char kMonthLabelKey[] = "Month";

/// {"Range":[smallest,largest],"Value":[{labelKey:"...","Value":0.0},...]}, without white space. A
/// value that is not finite becomes 0.0. `labelKey` is borrowed for the call.
[[nodiscard]] std::wstring SeriesText(const Series& series, const char* labelKey);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
