#pragma once

#include <optional>
#include <string>
#include <vector>

namespace WattleafHost {

struct SeriesEntry {
  std::string label;
  double value = 0.0;
};

/// The result of commands 4 to 6: {"Range":[low,high],"Value":[{"Time":"2:00","Value":0.0},...]}.
struct Series {
  double low = 0.0;
  double high = 0.0;
  std::vector<SeriesEntry> entries;
};

/// Reads a series; the label member may have any name. Nothing for a text of another shape.
std::optional<Series> TryReadSeries(const std::string& text);

}  // namespace WattleafHost
