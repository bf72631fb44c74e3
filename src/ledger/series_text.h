#pragma once

#include <string>

#include "ledger/series.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The member that holds an entry's label, for each series.
inline constexpr char kHourLabelKey[] = "Time";
inline constexpr char kDayLabelKey[] = "Day";
inline constexpr char kMonthLabelKey[] = "Month";

/// {"Range":[smallest,largest],"Value":[{labelKey:"...","Value":0.0},...]}, without white space. A
/// value that is not finite reads 0.0. `labelKey` is borrowed for the call.
std::wstring SeriesText(const Series& series, const char* labelKey);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
