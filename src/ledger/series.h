#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/calendar.h"
#include "ledger/power_ledger.h"

// The data of the three charts, in chart order: the oldest entry first.
namespace Zq::Gantry::Server::Services::Wattleaf {

struct SeriesEntry {
  std::string label;
  float energyWh = 0.0F;
};
using Series = std::vector<SeriesEntry>;

/// The twelve full hours before `hourNow` (0 to 23), labelled "0:00" to "23:00", from the hourly
/// energy of both days.
Series HourSeries(int hourNow, const std::map<int, float>& yesterday,
                  const std::map<int, float>& today);

/// Seven steps of a day, from seven days before `today`, labelled "Mon" to "Sun".
Series DaySeries(const DateTime& today, const PowerLedger& ledger);

/// Six months, the running one last, labelled "Jan" to "Dec". `now` is the local time now, from
/// which the labels are made.
Series MonthSeries(const DateTime& today, const DateTime& now, const PowerLedger& ledger);

/// The member that holds an entry's label, for each series.
inline constexpr char kHourLabelKey[] = "Time";
inline constexpr char kDayLabelKey[] = "Day";
inline constexpr char kMonthLabelKey[] = "Month";

/// {"Range":[smallest,largest],"Value":[{labelKey:"...","Value":0.0},...]}, without white space. A
/// value that is not finite reads 0.0. `labelKey` is borrowed for the call.
std::wstring SeriesText(const Series& series, const char* labelKey);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
